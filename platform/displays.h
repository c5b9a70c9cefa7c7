#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "platform/geometry.h"
#include "platform/identifiers.h"

namespace tallowin {

/// One screen (NSScreen).
struct Screen {
  DisplayID displayID = 0;
  CGRect bounds;              ///< as CGDisplayBounds
  std::string localizedName;  ///< what the user calls it
  bool operator==(const Screen&) const = default;
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
};

}  // namespace tallowin
