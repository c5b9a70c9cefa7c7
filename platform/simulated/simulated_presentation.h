#pragma once

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "platform/presentation.h"
#include "platform/simulated/journal.h"

namespace tallowin {

/// What the simulated user sees and hears, as lines of the journal, and what he does with it. Main thread only.

class SimulatedHUD : public HUD {
 public:
  explicit SimulatedHUD(Journal& journal) : journal_(journal) {}
  void show(const ShownSpace& space) override;

 private:
  Journal& journal_;
};

class SimulatedOverview : public OverviewPanel {
 public:
  explicit SimulatedOverview(Journal& journal) : journal_(journal) {}
  Shown toggle() override;
  [[nodiscard]] bool isShown() const override { return shown_; }

 private:
  Journal& journal_;
  bool shown_ = false;
};

class SimulatedSearchPanels : public SearchPanels {
 public:
  explicit SimulatedSearchPanels(Journal& journal) : journal_(journal) {}
  Shown showWindows(bool allSpaces) override {
    journal_.record("windowPanel", {{"allSpaces", allSpaces}});
    return {};
  }
  Shown showLauncher() override {
    journal_.record("launcher", nlohmann::ordered_json::object());
    return {};
  }

 private:
  Journal& journal_;
};

class SimulatedSettingsWindow : public SettingsWindow {
 public:
  explicit SimulatedSettingsWindow(Journal& journal) : journal_(journal) {}
  Shown show(const std::optional<std::string>& tab, const std::optional<std::string>& spaceID) override;

 private:
  Journal& journal_;
};

class SimulatedRenameDialog : public RenameDialog {
 public:
  explicit SimulatedRenameDialog(Journal& journal) : journal_(journal) {}
  Shown present(const ShownSpace& space, bool isNew, Completion completion) override;

  /// The user gives the name, or cancels. Nothing happens without a dialog.
  void answer(const std::optional<std::string>& name);

 private:
  Journal& journal_;
  Completion open_;
};

class SimulatedFeedback : public Feedback {
 public:
  explicit SimulatedFeedback(Journal& journal) : journal_(journal) {}
  void spaceChanged(const ShownSpace& to) override { journal_.record("feedback", {{"name", to.name}}); }

 private:
  Journal& journal_;
};

/// It takes the user back from the next Space that the script says a Dock click leads to.
class SimulatedDockGuard : public DockGuard {
 public:
  explicit SimulatedDockGuard(Journal& journal) : journal_(journal) {}
  void setBounceBack(std::function<void(const std::string& spaceID)> bounceBack) override {
    bounceBack_ = std::move(bounceBack);
  }
  void refresh(const std::string& currentSpaceID) override { current_ = currentSpaceID; }
  bool spaceChanged(const std::string& toSpaceID) override;

  /// The next change of the active Space comes from a click in the Dock.
  void click() { clicked_ = true; }

 private:
  Journal& journal_;
  std::function<void(const std::string& spaceID)> bounceBack_;
  std::string current_;
  bool clicked_ = false;
};

class SimulatedDesktopLabel : public DesktopLabel {
 public:
  explicit SimulatedDesktopLabel(Journal& journal) : journal_(journal) {}
  void update(const std::map<std::string, ShownSpace>& active) override;

 private:
  Journal& journal_;
};

class SimulatedSpaceDock : public SpaceDock {
 public:
  explicit SimulatedSpaceDock(Journal& journal) : journal_(journal) {}
  void update(const std::vector<std::string>& applications) override {
    journal_.record("spaceDock", {{"applications", applications}});
  }

 private:
  Journal& journal_;
};

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

class SimulatedTour : public GuidedTour {
 public:
  explicit SimulatedTour(Journal& journal) : journal_(journal) {}
  bool welcome() override {
    journal_.record("welcome", nlohmann::ordered_json::object());
    return true;
  }
  Shown runDemo() override {
    journal_.record("demoTour", nlohmann::ordered_json::object());
    return {};
  }

 private:
  Journal& journal_;
};

class SimulatedPreviewDisplay : public PreviewDisplay {
 public:
  [[nodiscard]] bool wantsPreviews() override { return true; }
};

/// All of it.
struct SimulatedPresentation {
  explicit SimulatedPresentation(Journal& journal)
      : hud(journal),
        overview(journal),
        panels(journal),
        settingsWindow(journal),
        renameDialog(journal),
        feedback(journal),
        dockGuard(journal),
        desktopLabel(journal),
        spaceDock(journal),
        tour(journal) {}

  /// Valid as long as this object.
  [[nodiscard]] Presentation services() {
    return {hud,          overview,  panels, settingsWindow, renameDialog, feedback, dockGuard,
            desktopLabel, spaceDock, edges,  touch,          tour,         previews};
  }

  SimulatedHUD hud;
  SimulatedOverview overview;
  SimulatedSearchPanels panels;
  SimulatedSettingsWindow settingsWindow;
  SimulatedRenameDialog renameDialog;
  SimulatedFeedback feedback;
  SimulatedDockGuard dockGuard;
  SimulatedDesktopLabel desktopLabel;
  SimulatedSpaceDock spaceDock;
  SimulatedTrigger edges;
  SimulatedTrigger touch;
  SimulatedTour tour;
  SimulatedPreviewDisplay previews;
};

}  // namespace tallowin
