#pragma once

#include <cstdint>
#include <optional>

#include "platform/identifiers.h"
#include "platform/property_list.h"

namespace tallowin {

/// Options of CGWindowListCopyWindowInfo (CGWindow.h, CGWindowListOption).
namespace CGWindowListOption {
inline constexpr std::uint32_t onScreenOnly = 1;
inline constexpr std::uint32_t includingWindow = 8;
inline constexpr std::uint32_t excludeDesktopElements = 16;
}  // namespace CGWindowListOption

/// The window server's list of windows. Any thread.
class WindowList {
 public:
  virtual ~WindowList() = default;

  /// One dictionary for each window, front to back, across all Spaces unless only those on screen are asked for. Keys:
  /// "kCGWindowLayer", "kCGWindowOwnerPID", "kCGWindowNumber" (integers), "kCGWindowBounds" (dictionary of reals "X",
  /// "Y", "Width", "Height", origin top left), "kCGWindowAlpha" (real), "kCGWindowName", "kCGWindowOwnerName" (texts).
  /// `relativeTo` is the one window listed with `includingWindow`, else 0. Nothing when the list cannot be had.
  virtual std::optional<PropertyList> CGWindowListCopyWindowInfo(std::uint32_t options, WindowNumber relativeTo) = 0;
};

class Accessibility;
class WindowList;
class WindowServer;

/// What a desktop is driven by that cannot be asked. The rooms called driven alone use it.
struct DrivenServices {
  WindowServer& windowServer;
  Accessibility& accessibility;
  WindowList& windowList;
};

}  // namespace tallowin
