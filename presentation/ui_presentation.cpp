#include "presentation/ui_presentation.h"

#include <utility>

#include "base/words.h"

namespace tallowin {

namespace {

constexpr auto uiPresentationCategory = "Presentation";

constexpr int usageMistake = 64;  // EX_USAGE of sysexits(3)

/// The value behind "key=" among the words.
std::optional<std::string> valueOf(const std::vector<std::string>& words, const std::string& key) {
  const auto prefix = key + "=";
  for (const auto& word : words) {
    if (word.starts_with(prefix)) {
      return word.substr(prefix.size());
    }
  }
  return std::nullopt;
}

}  // namespace

UiPresentation::UiPresentation(Services services)
    : Windowless(services.preferences, *this, services.log, services.program ? "here" : "without a window system"),
      services_(std::move(services)),
      logged_(services_.log),
      link_(services_.mainQueue, services_.clock,
            {.onAttached = [this] { attached(); },
             .onGone = [this] { gone(); },
             .onSilent =
                 [this] {
                   services_.log.error(uiPresentationCategory, "the ui process does not answer; it is ended");
                   process_.kill();
                   link_.drop();
                 }}),
      process_({services_.processes, services_.mainQueue, services_.clock, services_.log,
                services_.program.value_or(ProcessRequest()), [this] { return link_.isAttached(); },
                [this] { giveUp(); }}) {
  if (services_.program) {
    await();
  }
}

void UiPresentation::begin(Actions actions) {
  actions_ = std::move(actions);
  if (services_.program) {
    starting_ = services_.mainQueue.after(startDelay, [this] { process_.start(); });
  }
}

// The ui process comes and goes.

void UiPresentation::await() {
  coming_ = services_.mainQueue.after(startTime, [this] { giveUp(); });
}

void UiPresentation::attached() {
  coming_.cancel();
  services_.log.info(uiPresentationCategory, "the ui process is there");
  if (statusItem_) {
    link_.send(*statusItem_);
  }
  for (const auto& toast : std::exchange(waiting_, {})) {
    link_.send(toast);
  }
  for (auto& [number, question] : questions_) {
    question.shownByStandIn.cancel();
    link_.send(question.message);
  }
}

void UiPresentation::gone() {
  services_.log.error(uiPresentationCategory, "the ui process is gone");
  if (!services_.program) {
    giveUp();  // somebody had started it by hand
    return;
  }
  await();
  if (!process_.isRunning()) {
    process_.startSoon();
  }
}

/// What was waiting for the ui process is shown without.
void UiPresentation::giveUp() {
  coming_.cancel();
  for (const auto& toast : std::exchange(waiting_, {})) {
    services_.toasts.show(toast);
  }
  std::vector<std::uint64_t> numbers;
  for (const auto& [number, question] : questions_) {
    numbers.push_back(number);
  }
  for (const auto number : numbers) {
    showByStandIn(number);
  }
}

/// The question may be closed by that.
void UiPresentation::showByStandIn(std::uint64_t number) {
  const auto found = questions_.find(number);
  if (found == questions_.end() || found->second.shownByStandIn) {
    return;
  }
  const auto standIn = found->second.standIn;  // it goes with the question
  auto shown = standIn();
  if (const auto open = questions_.find(number); open != questions_.end()) {
    open->second.shownByStandIn = std::move(shown);
  }
}

/// Whether there is a ui process for a window that the user asks for, or one will soon be.
bool UiPresentation::makesWindows() {
  if (services_.program && !link_.isAttached() && !process_.isRunning()) {
    await();
    process_.start();
  }
  return link_.isAttached() || isComing();
}

// What is shown.

void UiPresentation::showStatusItem(const StatusItem& item) {
  statusItem_ = item;
  link_.send(item);
}

void UiPresentation::showHUD(const HUD& hud) {
  if (link_.isAttached()) {
    link_.send(hud);
  } else if (!isComing()) {
    Windowless::showHUD(hud);
  }
}

void UiPresentation::show(const Toast& toast) {
  if (link_.isAttached()) {
    logged_.show(toast);
    link_.send(toast);
  } else if (isComing()) {
    waiting_.push_back(toast);
  } else {
    services_.toasts.show(toast);
  }
}

void UiPresentation::giveFeedback(const SpaceRow& to) {
  if (!link_.isAttached()) {
    Windowless::giveFeedback(to);
    return;
  }
  const ui::Feedback feedback{settings().get(setting::switchSound),
                              settings().get(setting::speakSpaceNames) ? to.name : ""};
  if (feedback != ui::Feedback()) {
    link_.send(feedback);
  }
}

// Questions.

void UiPresentation::ask(std::uint64_t number, Question question) {
  const auto& asked = questions_.insert_or_assign(number, std::move(question)).first->second;
  if (link_.isAttached()) {
    link_.send(asked.message);
  } else if (!isComing()) {
    showByStandIn(number);
  }
}

void UiPresentation::close(std::uint64_t number) {
  if (questions_.erase(number) != 0) {
    link_.send(ui::Withdraw{number});
  }
}

/// The number for a question that takes the place of the one that is open, which ends unanswered.
std::uint64_t UiPresentation::replace(std::uint64_t& open) {
  if (const auto found = questions_.find(open); found != questions_.end()) {
    const auto answered = found->second.answered;
    close(open);
    answered({});
  }
  return open = ++lastQuestion_;
}

Subscription UiPresentation::show(const Alert& alert, const std::string& howToAnswer, Answered answered) {
  const auto number = ++lastQuestion_;
  ask(number, {ui::AskAlert{number, alert},
               [answered, buttons = alert.buttons.size()](const Words& words) {
                 const auto button = words.empty() ? std::nullopt : decimalInteger(words.front());
                 const bool isButton = button && *button >= 0 && static_cast<std::size_t>(*button) < buttons;
                 if (words.empty() || isButton) {
                   answered(button ? std::optional(static_cast<std::size_t>(*button)) : std::nullopt);
                 }
                 return words.empty() || isButton;
               },
               [this, alert, howToAnswer, answered] { return services_.alerts.show(alert, howToAnswer, answered); },
               {}});
  return Subscription([this, number] { close(number); });
}

Shown UiPresentation::askForName(const NameQuestion& question, NameGiven given) {
  if (!makesWindows()) {
    return Windowless::askForName(question, std::move(given));
  }
  const auto number = replace(question.isNew ? newSpaceQuestion_ : nameQuestion_);
  ask(number, {ui::AskName{number, question},
               [given](const Words& words) {
                 const auto name = valueOf(words, "name");
                 if (words.empty() || name) {
                   given(name ? std::optional(GivenName{*name, valueOf(words, "symbol"), valueOf(words, "color")})
                              : std::nullopt);
                 }
                 return words.empty() || name;
               },
               [this, number, question, given] {
                 questions_.erase(number);
                 static_cast<void>(Windowless::askForName(question, given));
                 return Subscription();
               },
               {}});
  return {};
}

Shown UiPresentation::askForNote(const NoteQuestion& question, NoteGiven given) {
  if (!makesWindows()) {
    return Windowless::askForNote(question, std::move(given));
  }
  const auto number = replace(noteQuestion_);
  ask(number, {ui::AskNote{number, question},
               [given](const Words& words) {
                 given(words.empty() ? std::nullopt : std::optional(words.front()));
                 return true;
               },
               [this, number, question, given] {
                 questions_.erase(number);
                 static_cast<void>(Windowless::askForNote(question, given));
                 return Subscription();
               },
               {}});
  return {};
}

// What the ui process says.

void UiPresentation::hear(const Words& words, std::shared_ptr<Caller> caller) {
  const auto verb = words.empty() ? "" : words.front();
  const Words rest(words.empty() ? words.end() : words.begin() + 1, words.end());
  std::string mistake;
  if (verb == "attach") {
    if (link_.attach(caller, services_.version)) {
      return;  // answered as long as both live
    }
    caller->out("another process shows the windows\n");
  } else if (verb == "seen" && rest.size() == 1) {
    link_.seen(static_cast<std::uint64_t>(decimalInteger(rest.front()).value_or(0)));
  } else if (verb == "answer" && !rest.empty()) {
    mistake = answer(rest);
  } else if (verb == "do" && actions_.perform) {
    actions_.perform(rest);
  } else {
    mistake = "ui attach, ui seen NUMBER, ui answer NUMBER [WORD...] or ui do WORD...";
  }
  if (!mistake.empty()) {
    caller->err("tallowin: " + mistake + "\n");
  }
  caller->exit(mistake.empty() ? 0 : usageMistake);
}

/// Says what is wrong with the words, or nothing. Whoever answers too late has done nothing wrong.
std::string UiPresentation::answer(const Words& words) {
  const auto number = decimalInteger(words.front());
  const auto found = questions_.find(static_cast<std::uint64_t>(number.value_or(0)));
  if (found == questions_.end()) {
    return "";
  }
  auto question = questions_.extract(found);
  if (question.mapped().answered({words.begin() + 1, words.end()})) {
    link_.send(ui::Withdraw{question.key()});  // it may have been answered by somebody else
    return "";
  }
  questions_.insert(std::move(question));
  return "that is no answer";
}

}  // namespace tallowin
