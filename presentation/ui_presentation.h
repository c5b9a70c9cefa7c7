#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "base/log_toasts.h"
#include "base/pending_alerts.h"
#include "platform/pinned.h"
#include "presentation/link/ui_link.h"
#include "presentation/link/ui_process.h"
#include "presentation/windowless.h"

namespace tallowin {

/// What the user sees, in the windows of the ui process. As long as there is no such process, as without a display,
/// messages and questions are shown by the stand-ins, and everything else is said not to be there. Main thread only.
class UiPresentation : public Windowless, public Toasts, public AlertDisplay, Pinned {
 public:
  /// What is to be shown waits so long for a ui process that is being started.
  static constexpr Duration startTime = std::chrono::seconds(2);
  /// The ui process is started so long after everything else, so that the first callers do not wait for it.
  static constexpr Duration startDelay = std::chrono::milliseconds(50);

  struct Services {
    Preferences& preferences;
    MainQueue& mainQueue;
    const Clock& clock;
    Log& log;
    WatchedProcesses& processes;
    Toasts& toasts;        ///< where there is no ui process
    AlertDisplay& alerts;  ///< where there is no ui process
    /// The ui process; nothing where there is to be none.
    std::optional<ProcessRequest> program;
    std::string version;  ///< of this program
  };

  explicit UiPresentation(Services services);

  /// Whether there is a ui process.
  [[nodiscard]] bool isShown() const { return link_.isAttached(); }

  void show(const Toast& toast) override;
  Subscription show(const Alert& alert, const std::string& howToAnswer, Answered answered) override;

  void begin(Actions actions) override;
  void showStatusItem(const StatusItem& item) override;
  void showHUD(const HUD& hud) override;
  Shown askForName(const NameQuestion& question, NameGiven given) override;
  Shown askForNote(const NoteQuestion& question, NoteGiven given) override;
  void giveFeedback(const SpaceRow& to) override;
  void hear(const std::vector<std::string>& words, std::shared_ptr<Caller> caller) override;

 private:
  using Words = std::vector<std::string>;
  /// A question until it is answered.
  struct Question {
    ui::Message message;
    /// Told the words of the answer; none for one that was closed unanswered. False when they are no answer.
    std::function<bool(const Words& words)> answered;
    std::function<Subscription()> standIn;  ///< shows it without a ui process; closes it if that cannot be
    Subscription shownByStandIn;
  };

  [[nodiscard]] bool isComing() const { return static_cast<bool>(coming_); }
  void await();
  void attached();
  void gone();
  void giveUp();
  [[nodiscard]] bool makesWindows();
  void ask(std::uint64_t number, Question question);
  void showByStandIn(std::uint64_t number);
  std::uint64_t replace(std::uint64_t& open);
  void close(std::uint64_t number);
  [[nodiscard]] std::string answer(const Words& words);

  const Services services_;
  LogToasts logged_;
  UiLink link_;
  UiProcess process_;
  WorkItem starting_;
  WorkItem coming_;  ///< while the ui process is awaited
  Actions actions_;
  std::optional<StatusItem> statusItem_;
  std::vector<Toast> waiting_;  ///< for the ui process that is coming
  std::map<std::uint64_t, Question> questions_;
  std::uint64_t lastQuestion_ = 0;
  std::uint64_t nameQuestion_ = 0;  ///< the open one; 0 for none, here and below
  std::uint64_t newSpaceQuestion_ = 0;
  std::uint64_t noteQuestion_ = 0;
};

}  // namespace tallowin
