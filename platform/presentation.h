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

/// The pop-up that says where the user has got to. Main thread only.
class HUD {
 public:
  virtual ~HUD() = default;

  /// Shows the Space that has just become active, in place of the one shown before, for as long as the setting
  /// "hudDuration" says; nothing while "hudEnabled" is off.
  virtual void show(const ShownSpace& space) = 0;
};

/// The panel with a tile for each Space. Main thread only.
class OverviewPanel {
 public:
  virtual ~OverviewPanel() = default;

  /// Shows it, or hides it when it is shown.
  virtual Shown toggle() = 0;

  [[nodiscard]] virtual bool isShown() const = 0;
};

/// The panels in which the user searches. Main thread only.
class SearchPanels {
 public:
  virtual ~SearchPanels() = default;

  /// For windows, of the current Space or of all.
  virtual Shown showWindows(bool allSpaces) = 0;

  /// For applications to launch.
  virtual Shown showLauncher() = 0;
};

/// Asks for the name of a Space. Main thread only.
class RenameDialog {
 public:
  /// Told the name that the user gave, which may be empty, or nothing when he gave none.
  using Completion = std::function<void(const std::optional<std::string>& name)>;

  virtual ~RenameDialog() = default;

  /// Asks without blocking, in place of a dialog that is still open (which then ends without a name). `isNew`: the
  /// Space has just been made, and the user did not ask to name it. `completion` runs once, maybe inside this call,
  /// also when the dialog cannot be shown.
  virtual Shown present(const ShownSpace& space, bool isNew, Completion completion) = 0;
};

/// The window in which the user changes settings. Main thread only.
class SettingsWindow {
 public:
  /// Its tabs, by the names that the command line knows.
  static constexpr auto tabs = std::to_array<std::string_view>(
      {"general", "spaces", "windows", "shortcuts", "appearance", "overview", "statistics"});

  virtual ~SettingsWindow() = default;

  /// Opens it, or brings it to the front, on one of `tabs` (absent: the one used last); with `spaceID` the tab "spaces"
  /// shows the page of that Space.
  virtual Shown show(const std::optional<std::string>& tab, const std::optional<std::string>& spaceID) = 0;
};

/// What the user hears of a switch. Main thread only.
class Feedback {
 public:
  virtual ~Feedback() = default;

  /// Plays the sound that the setting "switchSound" names and, if "speakSpaceNames" is on, speaks the Space's name.
  virtual void spaceChanged(const ShownSpace& to) = 0;
};

/// The name of the Space on the desktop itself, while the setting "desktopLabel" is on. Main thread only.
class DesktopLabel {
 public:
  virtual ~DesktopLabel() = default;

  /// `active` are the active Spaces by the identifiers of their displays.
  virtual void update(const std::map<std::string, ShownSpace>& active) = 0;
};

/// The bar with the applications of the current Space, while the setting "spaceDock" is on. Main thread only.
class SpaceDock {
 public:
  virtual ~SpaceDock() = default;

  /// The names of the applications in the order of their windows; empty for a Space without windows.
  virtual void update(const std::vector<std::string>& applications) = 0;
};

/// Shows the user what there is: once at the first run, and in the demonstration mode on request. Main thread only.
class GuidedTour {
 public:
  virtual ~GuidedTour() = default;

  /// The welcome of the first run. False when it cannot be shown, so that it is still owed.
  virtual bool welcome() = 0;

  virtual Shown runDemo() = 0;
};

/// Whatever shows the user the previews of the Spaces. Main thread only.
class PreviewDisplay {
 public:
  virtual ~PreviewDisplay() = default;

  /// Whether there is anything that would show them; else they need not be taken.
  [[nodiscard]] virtual bool wantsPreviews() = 0;
};

/// Undoes jumps to another Space that a click in the Dock causes, while the setting "dockClickProtection" is on. Main
/// thread only.
class DockGuard {
 public:
  virtual ~DockGuard() = default;

  /// `bounceBack` is told the id of the Space that the user is to be taken back to.
  virtual void setBounceBack(std::function<void(const std::string& spaceID)> bounceBack) = 0;

  /// The Space that the user is in. To be called with the first one, and when settings change.
  virtual void refresh(const std::string& currentSpaceID) = 0;

  /// The active Space has changed. True when a click in the Dock did it and the user is being taken back: nothing else
  /// may react to this change.
  virtual bool spaceChanged(const std::string& toSpaceID) = 0;
};

/// A way to ask for the overview without a key: the screen's edges ("hotCorner", "notchHover"), the trackpad
/// ("fourFingerTap"). Main thread only.
class OverviewTrigger {
 public:
  virtual ~OverviewTrigger() = default;

  /// `pulled` is told each time.
  virtual void setHandler(std::function<void()> pulled) = 0;

  /// Follows the settings. To be called at the start and when they have changed.
  virtual void refresh() = 0;
};

/// What the user sees and hears of the program beside messages and questions, and what it notices of his hands.
struct Presentation {
  HUD& hud;
  OverviewPanel& overview;
  SearchPanels& panels;
  SettingsWindow& settingsWindow;
  RenameDialog& renameDialog;
  Feedback& feedback;
  DockGuard& dockGuard;
  DesktopLabel& desktopLabel;
  SpaceDock& spaceDock;
  OverviewTrigger& edges;
  OverviewTrigger& touch;
  GuidedTour& tour;
  PreviewDisplay& previews;
};

}  // namespace tallowin
