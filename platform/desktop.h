#pragma once

#include <cstdint>
#include <expected>
#include <functional>
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

}  // namespace tallowin
