#pragma once

#include <array>
#include <cstdint>
#include <expected>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tallowin {

/// Whether something could be shown that the user asked for; if not, the sentence that he has been told.
using Shown = std::expected<void, std::string>;

/// What the user is shown of a Space.
struct ShownSpace {
  std::string id;
  std::string name;
  std::optional<std::int64_t> desktopNumber;  ///< counted from 1; full-screen Spaces have none
  std::string symbol;                         ///< name of a system symbol image
  bool operator==(const ShownSpace&) const = default;
};

/// The tabs of the settings window, by the names that the command line knows.
inline constexpr auto settingsTabs = std::to_array<std::string_view>(
    {"general", "spaces", "windows", "shortcuts", "appearance", "overview", "statistics"});

/// What the user sees and hears of the program beside messages and questions. Nothing here blocks. Main thread only.
class Presentation {
 public:
  /// Told the name that the user gave, which may be empty, or nothing when he gave none.
  using NameGiven = std::function<void(const std::optional<std::string>& name)>;

  virtual ~Presentation() = default;

  /// The pop-up that says where the user has got to: shows the Space that has just become active, in place of the one
  /// shown before, for as long as the setting "hudDuration" says; nothing while "hudEnabled" is off.
  virtual void showHUD(const ShownSpace& space) = 0;

  /// Whether there is a panel with a tile for each Space.
  [[nodiscard]] virtual bool hasOverview() const = 0;
  /// Shows it, or hides it when it is shown.
  virtual Shown toggleOverview() = 0;
  [[nodiscard]] virtual bool isOverviewShown() const = 0;

  /// The panel in which the user searches for windows, of the current Space or of all.
  virtual Shown showWindowPanel(bool allSpaces) = 0;
  /// The one for applications to launch.
  virtual Shown showLauncher() = 0;

  /// Asks for the name of a Space, in place of a dialog that is still open (which then ends without a name). `isNew`:
  /// the Space has just been made, and the user did not ask to name it. `given` runs once, maybe inside this call, also
  /// when the dialog cannot be shown.
  virtual Shown askForName(const ShownSpace& space, bool isNew, NameGiven given) = 0;

  /// Opens the window in which the user changes settings, or brings it to the front, on one of `settingsTabs` (absent:
  /// the one used last); with `spaceID` the tab "spaces" shows the page of that Space.
  virtual Shown showSettings(const std::optional<std::string>& tab, const std::optional<std::string>& spaceID) = 0;

  /// What the user hears of a switch: plays the sound that the setting "switchSound" names and, if "speakSpaceNames" is
  /// on, speaks the Space's name.
  virtual void giveFeedback(const ShownSpace& to) = 0;

  /// The names of the active Spaces, by the identifiers of their displays, on the desktops themselves, while the
  /// setting "desktopLabel" is on.
  virtual void updateDesktopLabels(const std::map<std::string, ShownSpace>& active) = 0;

  /// The bar with the applications of the current Space, while the setting "spaceDock" is on: their names in the order
  /// of their windows; none for a Space without windows.
  virtual void updateSpaceDock(const std::vector<std::string>& applications) = 0;

  /// Shows what there is at the first run. False when it cannot be shown, so that it is still owed.
  virtual bool welcome() = 0;
  /// Shows what there is in the demonstration mode.
  virtual Shown runDemoTour() = 0;

  /// Whether anything would show the user the previews of the Spaces; else they need not be taken.
  [[nodiscard]] virtual bool wantsPreviews() = 0;
};

}  // namespace tallowin
