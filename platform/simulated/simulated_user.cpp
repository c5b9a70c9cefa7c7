#include "platform/simulated/simulated_user.h"

#include <algorithm>
#include <utility>

#include "base/unicode.h"

namespace tallowin {

namespace {

nlohmann::ordered_json optionalText(const std::optional<std::string>& text) {
  return text ? nlohmann::ordered_json(*text) : nlohmann::ordered_json();
}

}  // namespace

void SimulatedAlerts::show(const Alert& alert, std::function<void(std::optional<std::size_t>)> answered) {
  journal_.record(
      "alert",
      {{"messageText", alert.messageText}, {"informativeText", alert.informativeText}, {"buttons", alert.buttons}});
  shown_.push_back({alert, std::move(answered)});
}

void SimulatedAlerts::press(const std::optional<std::string>& button) {
  if (shown_.empty()) {
    return;
  }
  std::optional<std::size_t> index;
  if (button) {
    const auto& buttons = shown_.back().alert.buttons;
    const auto found = std::ranges::find(buttons, *button);
    if (found == buttons.end()) {
      return;
    }
    index = static_cast<std::size_t>(found - buttons.begin());
  }
  const auto answered = std::move(shown_.back().answered);
  shown_.pop_back();
  answered(index);
}

std::expected<std::string, std::string> SimulatedAlerts::answer(std::string_view button) {
  for (auto shown = shown_.begin(); shown != shown_.end(); ++shown) {
    const auto& buttons = shown->alert.buttons;
    const auto found = std::ranges::find_if(buttons, [&](const auto& name) { return equalIgnoringCase(name, button); });
    if (found != buttons.end()) {
      const auto index = static_cast<std::size_t>(found - buttons.begin());
      auto line = shown->alert.messageText + ' ' + *found;
      const auto answered = std::move(shown->answered);
      shown_.erase(shown);
      answered(index);
      return line;
    }
  }
  return std::unexpected("nothing is asked that has this button");
}

void SimulatedDesktopNames::publish(const std::map<ManagedSpaceID, std::string>& names) {
  if (names_ == names) {
    return;
  }
  names_ = names;
  auto listed = nlohmann::ordered_json::object();
  for (const auto& [space, name] : names) {
    listed[std::to_string(space)] = name;
  }
  journal_.record("publishDesktopNames", {{"names", listed}});
}

void SimulatedUser::show(const Toast& toast) {
  nlohmann::ordered_json arguments = {{"text", toast.text}};
  if (toast.symbol) {
    arguments["symbol"] = *toast.symbol;
  }
  arguments["error"] = toast.isError;
  journal_.record("toast", arguments);
}

void SimulatedUser::showStatusItem(const StatusItem& item) {
  statusItem_ = item;
  auto marks = nlohmann::ordered_json::array();
  for (const auto& mark : item.marks) {
    marks.push_back(mark.isActive ? "[" + mark.text + "]" : mark.text);
  }
  note("statusItem", {{"text", item.text},
                      {"number", item.number},
                      {"symbol", item.symbol},
                      {"color", optionalText(item.colorHex)},
                      {"marks", marks},
                      {"more", item.more},
                      {"toolTip", item.toolTip}});
}

void SimulatedUser::showHUD(const HUD& hud) {
  nlohmann::ordered_json arguments = {{"id", hud.id}, {"name", hud.name}, {"symbol", hud.symbol}};
  if (hud.desktopNumber) {
    arguments["desktopNumber"] = *hud.desktopNumber;
  }
  journal_.record("hud", arguments);
}

Shown SimulatedUser::showSettings(const std::optional<std::string>& tab, const std::optional<std::string>& spaceID) {
  return note("settingsWindow", {{"tab", optionalText(tab)}, {"spaceID", optionalText(spaceID)}});
}

Shown SimulatedUser::askForName(const NameQuestion& question, NameGiven given) {
  answerRenameDialog(std::nullopt);
  renameDialog_ = std::move(given);
  return note("renameDialog", {{"id", question.space.id}, {"name", question.space.name}, {"isNew", question.isNew}});
}

void SimulatedUser::answerRenameDialog(const std::optional<GivenName>& answer) {
  if (const auto given = std::exchange(renameDialog_, nullptr)) {
    given(answer);
  }
}

Shown SimulatedUser::askForNote(const NoteQuestion& question, NoteGiven given) {
  answerNoteDialog(std::nullopt);
  noteDialog_ = std::move(given);
  return note("noteDialog", {{"id", question.space.id}, {"text", question.text}});
}

void SimulatedUser::answerNoteDialog(const std::optional<std::string>& text) {
  if (const auto given = std::exchange(noteDialog_, nullptr)) {
    given(text);
  }
}

void SimulatedUser::chooseInMenu(const std::vector<std::string>& path) {
  const auto menu = actions_.menu();
  if (const auto* entry = entryAt(menu, path); entry != nullptr && !entry->asksForFile) {
    actions_.perform(entry->request);
  } else {
    note("menuHasNo", {{"entry", path}});
  }
}

void SimulatedUser::lookAtMenu() {
  std::vector<std::string> lines;
  visitMenu(actions_.menu(), [&lines](const MenuEntry& entry, std::size_t depth) {
    const auto label = entry.kind == MenuEntry::Kind::separator ? "---" : entry.label;
    lines.push_back(std::string(2 * depth, ' ') + label + (entry.isMarked ? " *" : ""));
  });
  note("menu", {{"entries", lines}});
}

void SimulatedUser::scroll(int eighths, std::chrono::milliseconds now) {
  const int step = wheel_.turned(eighths, now);
  if (step != 0 && statusItem_ && statusItem_->scrollSwitches) {
    actions_.perform({step < 0 ? "previous" : "next"});
  }
}

void SimulatedUser::hear(const std::vector<std::string>& /*words*/, std::shared_ptr<Caller> caller) {
  caller->err("tallowin: this Tallowin shows no windows\n");
  caller->exit(1);
}

void SimulatedUser::pullTrigger() const {
  if (pulled_) {
    pulled_();
  }
}

bool SimulatedUser::spaceChanged(const std::string& toSpaceID, bool /*isOurs*/) {
  if (!std::exchange(clicked_, false)) {
    current_ = toSpaceID;
    return false;
  }
  journal_.record("dockGuard", {{"from", toSpaceID}, {"backTo", current_}});
  if (bounceBack_) {
    bounceBack_(current_);
  }
  return true;
}

void SimulatedUser::updateDesktopLabels(const std::map<std::string, SpaceRow>& active) {
  auto names = nlohmann::ordered_json::object();
  for (const auto& [display, space] : active) {
    names[display] = space.name;
  }
  journal_.record("desktopLabel", {{"names", names}});
}

}  // namespace tallowin
