#pragma once

#include <chrono>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/desktop.h"
#include "platform/messages.h"
#include "platform/pasteboard.h"
#include "platform/simulated/journal.h"
#include "presentation/presentation.h"
#include "triggers/triggers.h"

namespace tallowin {

/// Questions to the simulated user, as lines of the journal. They stay until the script answers them. Main thread only.
class SimulatedAlerts : public Alerts {
 public:
  explicit SimulatedAlerts(Journal& journal) : journal_(journal) {}

  void show(const Alert& alert, std::function<void(std::optional<std::size_t>)> answered) override;
  std::expected<std::string, std::string> answer(std::string_view button) override;

  /// The user presses a button of the alert shown last, or closes it when `button` is absent. Nothing happens without
  /// an alert or if it has no such button.
  void press(const std::optional<std::string>& button);

 private:
  struct Shown {
    Alert alert;
    std::function<void(std::optional<std::size_t>)> answered;
  };

  Journal& journal_;
  std::vector<Shown> shown_;  ///< the last one is in front
};

/// Names of Spaces for the simulated system's own displays of them: a line of the journal whenever they become others.
/// The system itself names none. Main thread only.
class SimulatedDesktopNames : public DesktopNames {
 public:
  explicit SimulatedDesktopNames(Journal& journal) : journal_(journal) {}

  void publish(const std::map<ManagedSpaceID, std::string>& names) override;
  const std::map<ManagedSpaceID, std::string>& ownNames() override { return none_; }
  Subscription observeOwnNames(std::function<void()> /*observer*/) override { return {}; }

 private:
  Journal& journal_;
  std::map<ManagedSpaceID, std::string> names_;
  const std::map<ManagedSpaceID, std::string> none_;
};

/// All else that the simulated user sees and hears, as lines of the journal, and what he does with it. Main thread
/// only.
class SimulatedUser : public Toasts, public Pasteboard, public Presentation, public Triggers {
 public:
  explicit SimulatedUser(Journal& journal) : journal_(journal) {}

  void show(const Toast& toast) override;
  bool setString(std::string_view text) override {
    note("setString", {{"text", text}});
    return true;
  }

  void begin(Actions actions) override { actions_ = std::move(actions); }
  void showStatusItem(const StatusItem& item) override;
  void showHUD(const HUD& hud) override;
  [[nodiscard]] bool hasOverview() const override { return true; }
  Shown toggleOverview() override {
    overviewShown_ = !overviewShown_;
    return note("overview", {{"shown", overviewShown_}});
  }
  [[nodiscard]] bool isOverviewShown() const override { return overviewShown_; }
  Shown showWindowPanel(bool allSpaces) override { return note("windowPanel", {{"allSpaces", allSpaces}}); }
  Shown showLauncher() override { return note("launcher"); }
  Shown askForName(const NameQuestion& question, NameGiven given) override;
  Shown askForNote(const NoteQuestion& question, NoteGiven given) override;
  Shown showSettings(const std::optional<std::string>& tab, const std::optional<std::string>& spaceID) override;
  void giveFeedback(const SpaceRow& to) override { note("feedback", {{"name", to.name}}); }
  void updateDesktopLabels(const std::map<std::string, SpaceRow>& active) override;
  void updateSpaceDock(const std::vector<std::string>& applications) override {
    note("spaceDock", {{"applications", applications}});
  }
  bool welcome() override {
    note("welcome");
    return true;
  }
  Shown runDemoTour() override { return note("demoTour"); }
  [[nodiscard]] bool wantsPreviews() override { return true; }
  void hear(const std::vector<std::string>& words, std::shared_ptr<Caller> caller) override;

  void setOverviewHandler(std::function<void()> pulled) override { pulled_ = std::move(pulled); }
  void refresh() override {}
  void setBounceBack(std::function<void(const std::string& spaceID)> bounceBack) override {
    bounceBack_ = std::move(bounceBack);
  }
  void refreshDockGuard(const std::string& currentSpaceID) override { current_ = currentSpaceID; }
  bool spaceChanged(const std::string& toSpaceID, bool isOurs) override;

  /// He gives what the dialog asks for, or closes it. Nothing happens without a dialog.
  void answerRenameDialog(const std::optional<GivenName>& given);
  void answerNoteDialog(const std::optional<std::string>& text);
  /// He opens the menu of the status item and chooses the entry with these labels on the way to it. A path to nothing
  /// is written down.
  void chooseInMenu(const std::vector<std::string>& path);
  /// He opens it and looks.
  void lookAtMenu();
  /// He turns the wheel over the status item, in eighths of a degree; positive is away from him.
  void scroll(int eighths, std::chrono::milliseconds now);
  /// The next change of the active Space comes from his click in the Dock, and the guard takes him back.
  void clickDock() { clicked_ = true; }
  /// He asks for the overview at the screen's edge or by touch.
  void pullTrigger() const;

 private:
  /// Writes down what he sees or hears.
  Shown note(std::string_view op, const nlohmann::ordered_json& arguments = {}) {
    journal_.record(op, arguments);
    return {};
  }

  Journal& journal_;
  bool overviewShown_ = false;
  Actions actions_;
  std::optional<StatusItem> statusItem_;
  WheelSteps wheel_;
  NameGiven renameDialog_;
  NoteGiven noteDialog_;
  std::function<void()> pulled_;
  std::function<void(const std::string& spaceID)> bounceBack_;
  std::string current_;
  bool clicked_ = false;
};

}  // namespace tallowin
