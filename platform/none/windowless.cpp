#include "platform/none/windowless.h"

#include <set>
#include <string>

#include "base/settings.h"

namespace tallowin {

namespace {

/// Says what is not there.
class Shortcomings {
 public:
  explicit Shortcomings(Windowless::Services services) : services_(services), settings_(services.preferences) {
    settings_.registerDefaults();
  }

  [[nodiscard]] const Settings& settings() const { return settings_; }

  /// What the settings ask for.
  void lack(bool isWanted, const std::string& what) {
    if (isWanted && said_.insert(what).second) {
      services_.log.info("Presentation", sentence(what));
    }
  }

  /// What the user asks for now.
  void refuse(const std::string& what) {
    lack(true, what);
    services_.toasts.show({sentence(what), std::nullopt, true});
  }

 private:
  [[nodiscard]] static std::string sentence(const std::string& what) {
    return what + " not available without a window system";
  }

  const Windowless::Services services_;
  Settings settings_;
  std::set<std::string> said_;
};

class NoHUD : public HUD {
 public:
  explicit NoHUD(Shortcomings& shortcomings) : shortcomings_(shortcomings) {}
  void show(const ShownSpace& /*space*/) override {
    shortcomings_.lack(shortcomings_.settings().boolean("hudEnabled"), "The pop-up on every switch is");
  }

 private:
  Shortcomings& shortcomings_;
};

class NoOverview : public OverviewPanel {
 public:
  explicit NoOverview(Shortcomings& shortcomings) : shortcomings_(shortcomings) {}
  void toggle() override { shortcomings_.refuse("The overview is"); }
  [[nodiscard]] bool isShown() const override { return false; }

 private:
  Shortcomings& shortcomings_;
};

class NoSearchPanels : public SearchPanels {
 public:
  explicit NoSearchPanels(Shortcomings& shortcomings) : shortcomings_(shortcomings) {}
  void showWindows(bool /*allSpaces*/) override { shortcomings_.refuse("The window search is"); }
  void showLauncher() override { shortcomings_.refuse("The launcher is"); }

 private:
  Shortcomings& shortcomings_;
};

class NoSettingsWindow : public SettingsWindow {
 public:
  explicit NoSettingsWindow(Shortcomings& shortcomings) : shortcomings_(shortcomings) {}
  void show(const std::optional<std::string>& /*tab*/, const std::optional<std::string>& /*spaceID*/) override {
    shortcomings_.refuse("The settings window is");
  }

 private:
  Shortcomings& shortcomings_;
};

class NoRenameDialog : public RenameDialog {
 public:
  explicit NoRenameDialog(Shortcomings& shortcomings) : shortcomings_(shortcomings) {}
  void present(const ShownSpace& /*space*/, bool isNew, Completion completion) override {
    if (isNew) {
      shortcomings_.lack(true, "The question for the name of a new Space is");
    } else {
      shortcomings_.refuse("The dialog that renames a Space is");
    }
    completion(std::nullopt);
  }

 private:
  Shortcomings& shortcomings_;
};

class NoFeedback : public Feedback {
 public:
  explicit NoFeedback(Shortcomings& shortcomings) : shortcomings_(shortcomings) {}
  void spaceChanged(const ShownSpace& /*to*/) override {
    const auto& settings = shortcomings_.settings();
    shortcomings_.lack(!settings.text("switchSound").empty() || settings.boolean("speakSpaceNames"),
                       "The sound of a switch is");
  }

 private:
  Shortcomings& shortcomings_;
};

class NoDockGuard : public DockGuard {
 public:
  explicit NoDockGuard(Shortcomings& shortcomings) : shortcomings_(shortcomings) {}
  void setBounceBack(std::function<void(const std::string& spaceID)> /*bounceBack*/) override {}
  void refresh(const std::string& /*currentSpaceID*/) override {
    shortcomings_.lack(shortcomings_.settings().boolean("dockClickProtection"), "Protection from Dock clicks is");
  }
  bool spaceChanged(const std::string& /*toSpaceID*/) override { return false; }

 private:
  Shortcomings& shortcomings_;
};

class NoDesktopLabel : public DesktopLabel {
 public:
  explicit NoDesktopLabel(Shortcomings& shortcomings) : shortcomings_(shortcomings) {}
  void update(const std::map<std::string, ShownSpace>& /*active*/) override {
    shortcomings_.lack(shortcomings_.settings().boolean("desktopLabel"), "The label on the desktop is");
  }

 private:
  Shortcomings& shortcomings_;
};

class NoSpaceDock : public SpaceDock {
 public:
  explicit NoSpaceDock(Shortcomings& shortcomings) : shortcomings_(shortcomings) {}
  void update(const std::vector<std::string>& /*applications*/) override {
    shortcomings_.lack(shortcomings_.settings().boolean("spaceDock"), "The Space dock is");
  }

 private:
  Shortcomings& shortcomings_;
};

class NoEdges : public OverviewTrigger {
 public:
  explicit NoEdges(Shortcomings& shortcomings) : shortcomings_(shortcomings) {}
  void setHandler(std::function<void()> /*pulled*/) override {}
  void refresh() override {
    const auto& settings = shortcomings_.settings();
    shortcomings_.lack(settings.hotCorner() != HotCorner::none || settings.boolean("notchHover"),
                       "Opening the overview at the screen's edge is");
  }

 private:
  Shortcomings& shortcomings_;
};

class NoTouch : public OverviewTrigger {
 public:
  explicit NoTouch(Shortcomings& shortcomings) : shortcomings_(shortcomings) {}
  void setHandler(std::function<void()> /*pulled*/) override {}
  void refresh() override {
    shortcomings_.lack(shortcomings_.settings().boolean("fourFingerTap"), "Opening the overview by touch is");
  }

 private:
  Shortcomings& shortcomings_;
};

class NoTour : public GuidedTour {
 public:
  explicit NoTour(Shortcomings& shortcomings) : shortcomings_(shortcomings) {}
  bool welcome() override { return false; }
  void runDemo() override { shortcomings_.refuse("The demo tour is"); }

 private:
  Shortcomings& shortcomings_;
};

class NoPreviews : public PreviewDisplay {
 public:
  explicit NoPreviews(Shortcomings& shortcomings) : shortcomings_(shortcomings) {}
  [[nodiscard]] bool wantsPreviews() override {
    shortcomings_.lack(shortcomings_.settings().boolean("thumbnailsEnabled"), "Showing previews is");
    return false;
  }

 private:
  Shortcomings& shortcomings_;
};

}  // namespace

struct Windowless::Parts {
  explicit Parts(Services services) : shortcomings(services) {}

  Shortcomings shortcomings;
  NoHUD hud{shortcomings};
  NoOverview overview{shortcomings};
  NoSearchPanels panels{shortcomings};
  NoSettingsWindow settingsWindow{shortcomings};
  NoRenameDialog renameDialog{shortcomings};
  NoFeedback feedback{shortcomings};
  NoDockGuard dockGuard{shortcomings};
  NoDesktopLabel desktopLabel{shortcomings};
  NoSpaceDock spaceDock{shortcomings};
  NoEdges edges{shortcomings};
  NoTouch touch{shortcomings};
  NoTour tour{shortcomings};
  NoPreviews previews{shortcomings};
};

Windowless::Windowless(Services services) : parts_(std::make_unique<Parts>(services)) {}

Windowless::~Windowless() = default;

Presentation Windowless::presentation() const {
  auto& parts = *parts_;
  return {parts.hud,      parts.overview,  parts.panels,       parts.settingsWindow, parts.renameDialog,
          parts.feedback, parts.dockGuard, parts.desktopLabel, parts.spaceDock,      parts.edges,
          parts.touch,    parts.tour,      parts.previews};
}

}  // namespace tallowin
