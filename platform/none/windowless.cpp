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
  Shown refuse(const std::string& what) {
    lack(true, what);
    services_.toasts.show({sentence(what), std::nullopt, true});
    return std::unexpected(sentence(what));
  }

 private:
  [[nodiscard]] static std::string sentence(const std::string& what) {
    return what + " not available without a window system";
  }

  const Windowless::Services services_;
  Settings settings_;
  std::set<std::string> said_;
};

/// A service that is not there.
template <typename Service>
class Lacking : public Service {
 public:
  explicit Lacking(Shortcomings& shortcomings) : shortcomings_(shortcomings) {}

 protected:
  Shortcomings& shortcomings_;
};

class NoHUD : public Lacking<HUD> {
 public:
  using Lacking::Lacking;
  void show(const ShownSpace& /*space*/) override {
    shortcomings_.lack(shortcomings_.settings().get(setting::hudEnabled), "The pop-up on every switch is");
  }
};

class NoOverview : public Lacking<OverviewPanel> {
 public:
  using Lacking::Lacking;
  Shown toggle() override { return shortcomings_.refuse("The overview is"); }
  [[nodiscard]] bool isShown() const override { return false; }
};

class NoSearchPanels : public Lacking<SearchPanels> {
 public:
  using Lacking::Lacking;
  Shown showWindows(bool /*allSpaces*/) override { return shortcomings_.refuse("The window search is"); }
  Shown showLauncher() override { return shortcomings_.refuse("The launcher is"); }
};

class NoSettingsWindow : public Lacking<SettingsWindow> {
 public:
  using Lacking::Lacking;
  Shown show(const std::optional<std::string>& /*tab*/, const std::optional<std::string>& /*spaceID*/) override {
    return shortcomings_.refuse("The settings window is");
  }
};

class NoRenameDialog : public Lacking<RenameDialog> {
 public:
  using Lacking::Lacking;
  Shown present(const ShownSpace& /*space*/, bool isNew, Completion completion) override {
    Shown shown;
    if (isNew) {
      shortcomings_.lack(true, "The question for the name of a new Space is");
    } else {
      shown = shortcomings_.refuse("The dialog that renames a Space is");
    }
    completion(std::nullopt);
    return shown;
  }
};

class NoFeedback : public Lacking<Feedback> {
 public:
  using Lacking::Lacking;
  void spaceChanged(const ShownSpace& /*to*/) override {
    const auto& settings = shortcomings_.settings();
    shortcomings_.lack(!settings.get(setting::switchSound).empty() || settings.get(setting::speakSpaceNames),
                       "The sound of a switch is");
  }
};

class NoDockGuard : public Lacking<DockGuard> {
 public:
  using Lacking::Lacking;
  void setBounceBack(std::function<void(const std::string& spaceID)> /*bounceBack*/) override {}
  void refresh(const std::string& /*currentSpaceID*/) override {
    shortcomings_.lack(shortcomings_.settings().get(setting::dockClickProtection), "Protection from Dock clicks is");
  }
  bool spaceChanged(const std::string& /*toSpaceID*/) override { return false; }
};

class NoDesktopLabel : public Lacking<DesktopLabel> {
 public:
  using Lacking::Lacking;
  void update(const std::map<std::string, ShownSpace>& /*active*/) override {
    shortcomings_.lack(shortcomings_.settings().get(setting::desktopLabel), "The label on the desktop is");
  }
};

class NoSpaceDock : public Lacking<SpaceDock> {
 public:
  using Lacking::Lacking;
  void update(const std::vector<std::string>& /*applications*/) override {
    shortcomings_.lack(shortcomings_.settings().get(setting::spaceDock), "The Space dock is");
  }
};

class NoEdges : public Lacking<OverviewTrigger> {
 public:
  using Lacking::Lacking;
  void setHandler(std::function<void()> /*pulled*/) override {}
  void refresh() override {
    const auto& settings = shortcomings_.settings();
    shortcomings_.lack(settings.get(setting::hotCorner) != HotCorner::none || settings.get(setting::notchHover),
                       "Opening the overview at the screen's edge is");
  }
};

class NoTouch : public Lacking<OverviewTrigger> {
 public:
  using Lacking::Lacking;
  void setHandler(std::function<void()> /*pulled*/) override {}
  void refresh() override {
    shortcomings_.lack(shortcomings_.settings().get(setting::fourFingerTap), "Opening the overview by touch is");
  }
};

class NoTour : public Lacking<GuidedTour> {
 public:
  using Lacking::Lacking;
  bool welcome() override { return false; }
  Shown runDemo() override { return shortcomings_.refuse("The demo tour is"); }
};

class NoPreviews : public Lacking<PreviewDisplay> {
 public:
  using Lacking::Lacking;
  [[nodiscard]] bool wantsPreviews() override {
    shortcomings_.lack(shortcomings_.settings().get(setting::thumbnailsEnabled), "Showing previews is");
    return false;
  }
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
