#pragma once

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/alerts.h"
#include "platform/desktop_names.h"
#include "platform/pasteboard.h"
#include "platform/presentation.h"
#include "platform/simulated/journal.h"
#include "platform/toasts.h"

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

/// A way to ask for the overview that the script pulls. Main thread only.
class SimulatedTrigger : public OverviewTrigger {
 public:
  void setHandler(std::function<void()> pulled) override { pulled_ = std::move(pulled); }
  void refresh() override {}

  void pull() const {
    if (pulled_) {
      pulled_();
    }
  }

 private:
  std::function<void()> pulled_;
};

/// All else that the simulated user sees and hears, as lines of the journal, and what he does with it. Main thread
/// only.
class SimulatedUser : public Toasts,
                      public Pasteboard,
                      public HUD,
                      public OverviewPanel,
                      public SearchPanels,
                      public SettingsWindow,
                      public RenameDialog,
                      public Feedback,
                      public DockGuard,
                      public DesktopLabel,
                      public SpaceDock,
                      public GuidedTour,
                      public PreviewDisplay {
 public:
  explicit SimulatedUser(Journal& journal) : journal_(journal) {}

  void show(const Toast& toast) override;
  bool setString(std::string_view text) override;
  void show(const ShownSpace& space) override;
  Shown toggle() override;
  [[nodiscard]] bool isShown() const override { return overviewShown_; }
  Shown showWindows(bool allSpaces) override;
  Shown showLauncher() override;
  Shown show(const std::optional<std::string>& tab, const std::optional<std::string>& spaceID) override;
  Shown present(const ShownSpace& space, bool isNew, Completion completion) override;
  void spaceChanged(const ShownSpace& to) override;
  void setBounceBack(std::function<void(const std::string& spaceID)> bounceBack) override;
  void refresh(const std::string& currentSpaceID) override { current_ = currentSpaceID; }
  bool spaceChanged(const std::string& toSpaceID) override;
  void update(const std::map<std::string, ShownSpace>& active) override;
  void update(const std::vector<std::string>& applications) override;
  bool welcome() override;
  Shown runDemo() override;
  [[nodiscard]] bool wantsPreviews() override { return true; }

  /// He gives the name that the dialog asks for, or cancels. Nothing happens without a dialog.
  void answerRenameDialog(const std::optional<std::string>& name);
  /// The next change of the active Space comes from his click in the Dock, and the guard takes him back.
  void clickDock() { clicked_ = true; }

  /// What of it makes up the presentation. Valid as long as this object.
  [[nodiscard]] Presentation presentation() {
    return {*this, *this, *this, *this, *this, *this, *this, *this, *this, edges, touch, *this, *this};
  }

  SimulatedTrigger edges;
  SimulatedTrigger touch;

 private:
  Journal& journal_;
  bool overviewShown_ = false;
  Completion renameDialog_;
  std::function<void(const std::string& spaceID)> bounceBack_;
  std::string current_;
  bool clicked_ = false;
};

}  // namespace tallowin
