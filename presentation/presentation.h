#pragma once

#include <array>
#include <expected>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/ways_in.h"
#include "presentation/model/hud.h"
#include "presentation/model/menu.h"
#include "presentation/model/questions.h"
#include "presentation/model/status_item.h"

namespace tallowin {

/// Whether something could be shown that the user asked for; if not, the sentence that he has been told.
using Shown = std::expected<void, std::string>;

/// The tabs of the settings window, by the names that the command line knows.
inline constexpr auto settingsTabs = std::to_array<std::string_view>(
    {"general", "spaces", "windows", "shortcuts", "appearance", "overview", "statistics"});

/// What the user sees and hears of the program beside messages and questions. Nothing here blocks. Main thread only.
class Presentation {
 public:
  /// Told what the user said, or nothing when he closed the dialog.
  using NameGiven = std::function<void(const std::optional<GivenName>& given)>;
  using NoteGiven = std::function<void(const std::optional<std::string>& text)>;

  /// What the user's hands on what is shown lead to.
  struct Actions {
    /// The menu as it is now.
    std::function<Menu()> menu;
    /// Does what a request in the words of the command line asks for, and tells the user if nothing was done.
    std::function<void(const std::vector<std::string>& words)> perform;
  };

  virtual ~Presentation() = default;

  /// Begins to show what always stands there. Called once, when everything else runs; nothing is shown before.
  virtual void begin(Actions actions) = 0;

  /// What stands in the panel, in place of what was there before.
  virtual void showStatusItem(const StatusItem& item) = 0;

  /// Shows the pop-up for the Space that has just become active, in place of the one shown before.
  virtual void showHUD(const HUD& hud) = 0;

  /// Whether there is a panel with a tile for each Space.
  [[nodiscard]] virtual bool hasOverview() const = 0;
  /// Shows it, or hides it when it is shown.
  virtual Shown toggleOverview() = 0;
  [[nodiscard]] virtual bool isOverviewShown() const = 0;

  /// The panel in which the user searches for windows, of the current Space or of all.
  virtual Shown showWindowPanel(bool allSpaces) = 0;
  /// The one for applications to launch.
  virtual Shown showLauncher() = 0;

  /// Asks for the name of a Space, in place of a dialog that is still open (which then ends without a name). `given`
  /// runs once, maybe inside this call, also when the dialog cannot be shown.
  virtual Shown askForName(const NameQuestion& question, NameGiven given) = 0;
  /// Asks for the note of a Space, in the same way.
  virtual Shown askForNote(const NoteQuestion& question, NoteGiven given) = 0;

  /// Opens the window in which the user changes settings, or brings it to the front, on one of `settingsTabs` (absent:
  /// the one used last); with `spaceID` the tab "spaces" shows the page of that Space.
  virtual Shown showSettings(const std::optional<std::string>& tab, const std::optional<std::string>& spaceID) = 0;

  /// What the user hears of a switch: plays the sound that the setting "switchSound" names and, if "speakSpaceNames" is
  /// on, speaks the Space's name.
  virtual void giveFeedback(const SpaceRow& to) = 0;

  /// The names of the active Spaces, by the identifiers of their displays, on the desktops themselves, while the
  /// setting "desktopLabel" is on.
  virtual void updateDesktopLabels(const std::map<std::string, SpaceRow>& active) = 0;

  /// The bar with the applications of the current Space, while the setting "spaceDock" is on: their names in the order
  /// of their windows; none for a Space without windows.
  virtual void updateSpaceDock(const std::vector<std::string>& applications) = 0;

  /// Shows what there is at the first run. False when it cannot be shown, so that it is still owed.
  virtual bool welcome() = 0;
  /// Shows what there is in the demonstration mode.
  virtual Shown runDemoTour() = 0;

  /// Whether anything would show the user the previews of the Spaces; else they need not be taken.
  [[nodiscard]] virtual bool wantsPreviews() = 0;

  /// What a process says that shows windows for this one: the words after "ui". The caller is answered, now or later.
  virtual void hear(const std::vector<std::string>& words, std::shared_ptr<Caller> caller) = 0;
};

}  // namespace tallowin
