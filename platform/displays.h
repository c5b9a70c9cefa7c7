#pragma once

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

#include "platform/geometry.h"
#include "platform/identifiers.h"

namespace tallowin {

/// What two rectangles have in common; an empty one when that is nothing.
[[nodiscard]] constexpr CGRect intersection(const CGRect& a, const CGRect& b) {
  const double left = std::max(a.origin.x, b.origin.x);
  const double top = std::max(a.origin.y, b.origin.y);
  const double right = std::min(a.origin.x + a.size.width, b.origin.x + b.size.width);
  const double bottom = std::min(a.origin.y + a.size.height, b.origin.y + b.size.height);
  return left < right && top < bottom ? CGRect{{left, top}, {right - left, bottom - top}} : CGRect{};
}

/// One screen (NSScreen).
struct Screen {
  DisplayID displayID = 0;
  CGRect bounds;              ///< as CGDisplayBounds
  std::string localizedName;  ///< what the user calls it
  bool operator==(const Screen&) const = default;
};

/// A monitor on a desktop where all monitors show one set of Spaces.
struct Monitor {
  std::string name;        ///< usually its connector's, such as "eDP-1"
  CGRect bounds;           ///< origin at the top left of the whole desktop
  CGRect workArea;         ///< what panels and docks leave of the bounds; the bounds where that is not known
  bool isBuiltIn = false;  ///< connected as the panels of laptops are
  bool isPrimary = false;
  bool operator==(const Monitor&) const = default;
};

/// The connected displays, under the names of CoreGraphics. Main thread only.
class Displays {
 public:
  virtual ~Displays() = default;

  /// The display whose top left corner is the origin of the coordinates; 0 without displays.
  virtual DisplayID CGMainDisplayID() = 0;

  /// The display's bounds, origin at the top left of the main display; empty for a display that is not connected.
  virtual CGRect CGDisplayBounds(DisplayID display) = 0;

  /// CFUUIDCreateFromString and CGDisplayGetDisplayIDFromUUID in one: the display with this UUID, written as 8-4-4-4-12
  /// hexadecimal digits in any case; 0 when the text is no UUID or no connected display has it.
  virtual DisplayID CGDisplayGetDisplayIDFromUUID(std::string_view uuid) = 0;

  /// Whether it is the computer's own panel.
  virtual bool CGDisplayIsBuiltin(DisplayID display) = 0;

  /// All screens, the main one first.
  virtual std::vector<Screen> screens() = 0;

  /// What identifies the set of connected displays where the managed-display-spaces list does not tell, because all
  /// displays share one set of Spaces: one stable identifier each, in no particular order. Empty elsewhere.
  virtual std::vector<std::string> displaySetIdentifiers() = 0;

  /// The active monitors of such a desktop, the primary one first. Empty elsewhere, and where they cannot be known.
  virtual std::vector<Monitor> monitors() = 0;
};

}  // namespace tallowin
