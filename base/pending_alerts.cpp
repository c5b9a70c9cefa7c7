#include "base/pending_alerts.h"

#include <algorithm>
#include <utility>

#include "base/unicode.h"
#include "base/words.h"

namespace tallowin {

namespace {

constexpr auto pendingAlertsCategory = "PendingAlerts";

bool isLetterOrDigit(char character) {
  return (character >= 'a' && character <= 'z') || (character >= 'A' && character <= 'Z') ||
         (character >= '0' && character <= '9');
}

/// The button as an argument that every shell takes as it stands.
std::string argument(const std::string& button, std::size_t index) {
  if (!button.empty() && std::ranges::all_of(button, isLetterOrDigit)) {
    return button;
  }
  const bool quotable = !button.empty() && button.find_first_of("\"$`\\!") == std::string::npos;
  return quotable ? '"' + button + '"' : std::to_string(index + 1);
}

std::string howToAnswer(const Alert& alert) {
  std::string text = "Answer with: ";
  for (std::size_t index = 0; index < alert.buttons.size(); ++index) {
    text += (index == 0 ? "" : ", or: ") + ("tallowin answer " + argument(alert.buttons[index], index));
  }
  return text;
}

}  // namespace

void PendingAlerts::show(const Alert& alert, std::function<void(std::optional<std::size_t>)> answered) {
  const auto how = howToAnswer(alert);
  const auto separator = alert.informativeText.empty() ? " " : " " + alert.informativeText + " ";
  log_.info(pendingAlertsCategory, alert.messageText + separator + how);
  const auto id = ++lastID_;
  auto displayed = display_.show(alert, how, [this, id](std::optional<std::size_t> button) { close(id, button); });
  open_.push_back({id, alert, std::move(answered), std::move(displayed)});
}

std::expected<std::string, std::string> PendingAlerts::answer(std::string_view button) {
  auto choice = choiceNamed(button);
  if (!choice) {
    choice = choiceNumbered(button);
  }
  if (!choice) {
    return std::unexpected(refusal(button));
  }
  close(choice->question, choice->button);
  return choice->line;
}

std::optional<PendingAlerts::Choice> PendingAlerts::choiceNamed(std::string_view button) const {
  for (const auto& [id, alert, answered, displayed] : open_) {
    const auto found =
        std::ranges::find_if(alert.buttons, [&](const auto& name) { return equalIgnoringCase(name, button); });
    if (found != alert.buttons.end()) {
      return Choice{id, static_cast<std::size_t>(found - alert.buttons.begin()), alert.messageText + ' ' + *found};
    }
  }
  return std::nullopt;
}

std::optional<PendingAlerts::Choice> PendingAlerts::choiceNumbered(std::string_view number) const {
  const auto wanted = decimalInteger(number);
  if (!wanted || *wanted < 1) {
    return std::nullopt;
  }
  const auto index = static_cast<std::uint64_t>(*wanted - 1);
  const auto found = std::ranges::find_if(open_, [&](const auto& open) { return index < open.alert.buttons.size(); });
  if (found == open_.end()) {
    return std::nullopt;
  }
  return Choice{found->id, index, found->alert.messageText + ' ' + found->alert.buttons[index]};
}

std::string PendingAlerts::refusal(std::string_view button) const {
  if (open_.empty()) {
    return "nothing is asked";
  }
  std::string text = "no open question has the button \"" + printable(button) + "\"; what can be answered:";
  for (const auto& open : open_) {
    text += std::string(&open == open_.data() ? "" : ";") + " \"" + open.alert.messageText + "\" with " +
            joined(open.alert.buttons, ", ");
  }
  return text;
}

void PendingAlerts::close(std::uint64_t id, std::optional<std::size_t> button) {
  const auto found = std::ranges::find(open_, id, &Question::id);
  if (found == open_.end()) {
    return;
  }
  auto question = std::move(*found);
  open_.erase(found);
  question.displayed.cancel();
  log_.info(pendingAlertsCategory, question.alert.messageText +
                                       (button ? " " + question.alert.buttons[*button] : " Closed without an answer"));
  question.answered(button);
}

}  // namespace tallowin
