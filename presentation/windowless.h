#pragma once

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/lacks.h"
#include "base/preferences.h"
#include "base/settings.h"
#include "platform/log.h"
#include "platform/messages.h"
#include "presentation/presentation.h"

namespace tallowin {

/// A presentation without windows. What it cannot do it says: to the log, once for each thing that the settings ask
/// for; to the user, whenever he asked for it. Main thread only.
class Windowless : public Presentation {
 public:
  /// `why`, which must outlive this, ends the sentences about what is not available.
  Windowless(Preferences& preferences, Toasts& toasts, Log& log, std::string_view why = "without a window system")
      : settings_(preferences), toasts_(toasts), lacks_(log, "Presentation"), why_(why) {
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

 protected:
  static constexpr int unavailable = 69;  ///< EX_UNAVAILABLE of sysexits(3)

  [[nodiscard]] const Settings& settings() const { return settings_; }

  /// What the settings ask for.
  void lack(bool isWanted, const std::string& what) { lacks_.lack(isWanted, sentence(what)); }

 private:
  [[nodiscard]] std::string sentence(const std::string& what) const {
    return what + " not available " + std::string(why_);
  }

  /// What the user asks for now.
  Shown refuse(const std::string& what) {
    lack(true, what);
    toasts_.show({sentence(what), std::nullopt, true});
    return std::unexpected(sentence(what));
  }

  Settings settings_;
  Toasts& toasts_;
  Lacks lacks_;
  const std::string_view why_;
};

}  // namespace tallowin
