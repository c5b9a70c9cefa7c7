#pragma once

#include <cstdint>
#include <expected>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "platform/identifiers.h"
#include "platform/subscription.h"

namespace tallowin {

/// One Space of a display.
struct DesktopSpace {
  ManagedSpaceID id = 0;      ///< stays with the Space for as long as it exists
  std::string uuid;           ///< an identity that outlives restarts of the system; empty where there is none
  std::int64_t index = 0;     ///< its place on the display, from 0, left to right
  bool isFullscreen = false;  ///< shows one application's window only
  std::optional<ProcessID> fullscreenPID;  ///< of that application, where it is known
  bool operator==(const DesktopSpace&) const = default;
};

/// The Spaces of one display.
struct DesktopDisplay {
  std::string id;  ///< display identifier: "Main", or the display's UUID
  std::vector<DesktopSpace> spaces;
  std::optional<ManagedSpaceID> current;  ///< the Space that is shown, also one that `spaces` does not have
  bool isMenuBarDisplay = false;          ///< carries the active menu bar; one display of a reading does
  bool operator==(const DesktopDisplay&) const = default;
};

/// The Spaces of all displays at one moment.
struct DesktopReading {
  std::vector<DesktopDisplay> displays;  ///< in the desktop's order; at least one
  /// Which program manages the windows: another value means that another one, or the same one anew, does so now. 0
  /// where that is not known.
  std::uint64_t manager = 0;
  bool operator==(const DesktopReading&) const = default;
};

/// A sign that the Spaces may have changed.
struct DesktopSign {
  std::string reason;    ///< for people who debug
  bool isExact = false;  ///< what changed can be read now, and the desktop does not take it back by itself
};

/// What of the desktop can be used, as an option set of seven bits: of the window server where it is driven.
class CGSBridgeHealth {
 public:
  enum Bit : std::uint32_t {
    connection = 1,            ///< there is a connection to the desktop
    managedDisplaySpaces = 2,  ///< it can list its Spaces
    activeMenuBarDisplay = 4,  ///< it can tell the display with the menu bar
    activeSpace = 8,           ///< it can tell the active Space
    notifications = 16,        ///< it gives signs of changes
    symbolicHotKeys = 32,      ///< the shortcuts of Mission Control can be read and enabled
    spacesListed = 64,         ///< the list can be had now and holds at least one display
  };

  /// Without these three bits Spaces cannot be detected.
  static constexpr std::uint32_t required = connection | managedDisplaySpaces | spacesListed;

  constexpr CGSBridgeHealth() = default;
  constexpr explicit CGSBridgeHealth(std::uint32_t bits) : bits_(bits) {}

  [[nodiscard]] constexpr std::uint32_t bits() const { return bits_; }
  [[nodiscard]] constexpr bool healthy() const { return (bits_ & required) == required; }
  constexpr bool operator==(const CGSBridgeHealth&) const = default;

 private:
  std::uint32_t bits_ = 0;
};

/// The Spaces of the desktop: what there is, and what shows which window. No operation fails loudly: what cannot be
/// had is nothing. Main thread only, except spacesOfWindow(), which the contents queue calls too.
class Desktop {
 public:
  virtual ~Desktop() = default;

  /// The Spaces now; nothing when they are not known.
  virtual std::optional<DesktopReading> read() = 0;

  /// The Space that the user looks at now; nothing when it is not known. Cheaper than read().
  virtual std::optional<ManagedSpaceID> activeSpace() = 0;

  /// Looks at everything afresh.
  virtual CGSBridgeHealth health() = 0;

  /// Makes `observer` the one receiver of signs, on the main thread. False when not all signs will come; some may.
  virtual bool observe(std::function<void(const DesktopSign&)> observer) = 0;

  /// The Spaces that show a window: one for most, several or all for one on all Spaces. Nothing on failure.
  virtual std::optional<std::vector<ManagedSpaceID>> spacesOfWindow(WindowNumber window) = 0;

  /// Asks for a window to be moved to a Space. True when the request was accepted, which does not mean that the window
  /// moved: ask spacesOfWindow() again.
  virtual bool moveWindow(WindowNumber window, ManagedSpaceID space) = 0;
};

/// What an asked desktop can do beside switching.
struct DesktopAbilities {
  bool addsSpaces = false;
  bool removesSpaces = false;
  bool movesWindows = false;
  bool operator==(const DesktopAbilities&) const = default;
};

/// Why a Space was not added or removed.
enum class DesktopRefusal {
  unable,   ///< this desktop does not do that
  noSpace,  ///< there is no such Space, or it is the only one
  ignored,  ///< the request was made, and what was asked for did not happen
};

/// A desktop that does what it is asked for. Main thread only.
class AskedDesktop : public Desktop {
 public:
  /// Told once, on the main thread, when what was asked for has happened or will not; inside the call when nothing had
  /// to be waited for. Never after the desktop is destroyed.
  using Completion = std::function<void(std::expected<void, DesktopRefusal>)>;

  /// What it can do, as far as is known now; a request that was ignored is no longer counted.
  virtual DesktopAbilities abilities() = 0;

  /// Asks for a Space to be shown. True when the request was sent; a sign comes when it is shown.
  virtual bool switchTo(ManagedSpaceID space) = 0;

  /// Adds a Space behind the last one of a display.
  virtual void addSpace(const std::string& display, Completion completion) = 0;

  /// Removes a Space. Its windows go to the Space on its right, those of the last one to the one on its left, and all
  /// others stay where they are. The only Space is not removed. While this, or any request of several steps, is under
  /// way everybody reads the Spaces as they were before, and no sign is given.
  virtual void removeSpace(ManagedSpaceID space, Completion completion) = 0;
};

/// How desktops are switched, added and removed and windows are moved to them.
enum class DesktopKind {
  driven,  ///< as a user does it: by gestures, keys and the buttons of Mission Control
  asked    ///< by requests to the window manager
};

/// The program that manages the windows.
struct WindowManagerFacts {
  std::string name;     ///< as it calls itself; empty when it does not say
  std::string version;  ///< such as "3.6.1"; empty when it cannot be found out
  /// What this program uses of the Extended Window Manager Hints and the window manager does not claim to support, by
  /// the names of the hints (_NET_SUPPORTED).
  std::vector<std::string> missingHints;
  bool operator==(const WindowManagerFacts&) const = default;
};

/// One item of the set-up checklist: something that must be right for everything to work.
struct SetUpCheck {
  std::string title;  ///< a few words
  bool ok = false;
  std::string finding = {};  ///< how it is, in whole sentences
  std::string advice = {};   ///< what to do about it, in whole sentences; empty where there is nothing to be done
  bool operator==(const SetUpCheck&) const = default;
};

/// What the desktop is, for reports. Main thread only.
class DesktopFacts {
 public:
  virtual ~DesktopFacts() = default;

  /// The running window manager; nothing while none runs, and on systems where it is part of the system. May run a
  /// program to find out its version, and wait for it.
  virtual std::optional<WindowManagerFacts> windowManager() = 0;

  /// What of it the program works with, and what it lacks. May wait for other programs, a second at most.
  virtual std::vector<SetUpCheck> checks() = 0;
};

/// Shows the user's names of Spaces where the desktop system itself names them: in pagers and bars. Main thread only.
class DesktopNames {
 public:
  virtual ~DesktopNames() = default;

  /// The names that the user gave, by managed id of the Space; every other Space keeps the desktop system's own name.
  /// They take the place of the names published before, are remembered, and are shown again when the desktop changes.
  virtual void publish(const std::map<ManagedSpaceID, std::string>& names) = 0;

  /// The desktop system's own names, by managed id, of those Spaces that it has a name for beyond a default: its
  /// number, or what it calls all of them with their numbers behind. Names that were published are none of them.
  [[nodiscard]] virtual const std::map<ManagedSpaceID, std::string>& ownNames() = 0;

  /// Calls `observer` when ownNames() may have become others.
  virtual Subscription observeOwnNames(std::function<void()> observer) = 0;
};

/// Which Space stands where, on systems that know desktops by their places only, so that the program itself keeps who
/// is who. Ids are managed ids, from left to right. Main thread only.
class SpacePlaces {
 public:
  virtual ~SpacePlaces() = default;

  /// The Spaces that there are; nothing where Spaces have an identity of their own, or none are known.
  [[nodiscard]] virtual std::optional<std::vector<ManagedSpaceID>> places() = 0;

  /// Those that are away for now, and come back when there are more desktops again.
  [[nodiscard]] virtual std::vector<ManagedSpaceID> parked() = 0;

  /// The desktops get the ids that another list has at their places, as when the records of another machine are taken
  /// over; windows stay where they are. Ids that are left over wait for more desktops. Does nothing where there are no
  /// places.
  virtual void adopt(const std::vector<ManagedSpaceID>& spaces) = 0;

  /// Makes desktops again for those of the list that were removed, and puts all into its order, with their windows;
  /// desktops that the list does not have follow. False when that is not possible here, or not seen to happen yet.
  virtual bool restore(const std::vector<ManagedSpaceID>& spaces) = 0;
};

}  // namespace tallowin
