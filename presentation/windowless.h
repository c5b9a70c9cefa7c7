#pragma once

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "base/preferences.h"
#include "base/settings.h"
#include "platform/log.h"
#include "platform/messages.h"
#include "presentation/presentation.h"
#include "triggers/triggers.h"

namespace tallowin {

/// A presentation without windows, and without what would watch pointer and fingers. What it cannot do it says: to the
/// log, once for each thing that the settings ask for; to the user, whenever he asked for it. Main thread only.
class Windowless : public Presentation, public Triggers {
 public:
  Windowless(Preferences& preferences, Toasts& toasts, Log& log) : settings_(preferences), toasts_(toasts), log_(log) {
    settings_.registerDefaults();
  }

  void begin(Actions /*actions*/) override {}
  void showStatusItem(const StatusItem& /*item*/) override {}
  void showHUD(const HUD& /*hud*/) override { lack(true, "The pop-up on every switch is"); }
  [[nodiscard]] bool hasOverview() const override { return false; }
  Shown toggleOverview() override { return refuse("The overview is"); }
  [[nodiscard]] bool isOverviewShown() const override { return false; }
  Shown showWindowPanel(bool /*allSpaces*/) override { return refuse("The window search is"); }
  Shown showLauncher() override { return refuse("The launcher is"); }
  Shown askForName(const NameQuestion& question, NameGiven given) override {
    Shown shown;
    if (question.isNew) {
      lack(true, "The question for the name of a new Space is");
    } else {
      shown = refuse("The dialog that renames a Space is");
    }
    given(std::nullopt);
    return shown;
  }
  Shown askForNote(const NoteQuestion& /*question*/, NoteGiven given) override {
    auto shown = refuse("The dialog for a Space's note is");
    given(std::nullopt);
    return shown;
  }
  Shown showSettings(const std::optional<std::string>& /*tab*/,
                     const std::optional<std::string>& /*spaceID*/) override {
    return refuse("The settings window is");
  }
  void giveFeedback(const SpaceRow& /*to*/) override {
    lack(!settings_.get(setting::switchSound).empty() || settings_.get(setting::speakSpaceNames),
         "The sound of a switch is");
  }
  void updateDesktopLabels(const std::map<std::string, SpaceRow>& /*active*/) override {
    lack(settings_.get(setting::desktopLabel), "The label on the desktop is");
  }
  void updateSpaceDock(const std::vector<std::string>& /*applications*/) override {
    lack(settings_.get(setting::spaceDock), "The Space dock is");
  }
  bool welcome() override { return false; }
  Shown runDemoTour() override { return refuse("The demo tour is"); }
  [[nodiscard]] bool wantsPreviews() override {
    lack(settings_.get(setting::thumbnailsEnabled), "Showing previews is");
    return false;
  }

  void hear(const std::vector<std::string>& /*words*/, std::shared_ptr<Caller> caller) override {
    caller->err("tallowin: this Tallowin shows no windows\n");
    caller->exit(unavailable);
  }

  void setOverviewHandler(std::function<void()> /*pulled*/) override {}
  void refresh() override {
    lack(settings_.get(setting::hotCorner) != HotCorner::none || settings_.get(setting::notchHover),
         "Opening the overview at the screen's edge is");
    lack(settings_.get(setting::fourFingerTap), "Opening the overview by touch is");
  }
  void setBounceBack(std::function<void(const std::string& spaceID)> /*bounceBack*/) override {}
  void refreshDockGuard(const std::string& /*currentSpaceID*/) override {
    lack(settings_.get(setting::dockClickProtection), "Protection from Dock clicks is");
  }
  bool spaceChanged(const std::string& /*toSpaceID*/) override { return false; }

 protected:
  static constexpr int unavailable = 69;  ///< EX_UNAVAILABLE of sysexits(3)

  [[nodiscard]] const Settings& settings() const { return settings_; }

  /// What the settings ask for.
  void lack(bool isWanted, const std::string& what) {
    if (isWanted && said_.insert(what).second) {
      log_.info("Presentation", sentence(what));
    }
  }

 private:
  [[nodiscard]] static std::string sentence(const std::string& what) {
    return what + " not available without a window system";
  }

  /// What the user asks for now.
  Shown refuse(const std::string& what) {
    lack(true, what);
    toasts_.show({sentence(what), std::nullopt, true});
    return std::unexpected(sentence(what));
  }

  Settings settings_;
  Toasts& toasts_;
  Log& log_;
  std::set<std::string> said_;
};

}  // namespace tallowin
