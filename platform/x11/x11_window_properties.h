#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "platform/x11/root_properties.h"
#include "platform/x11/x11_connection.h"
#include "platform/x11/x11_window.h"

namespace tallowin {

/// All elements of a 32-bit property; empty when it is absent or of another format.
[[nodiscard]] std::vector<std::uint32_t> parseWords(const X11Property& property);

/// _NET_FRAME_EXTENTS; nothing when it is absent, cut short, or has a width beyond any screen's.
[[nodiscard]] std::optional<FrameExtents> parseFrameExtents(const X11Property& property);

/// WM_CLASS: the instance and the class (ICCCM, WM_CLASS Property). Empty texts for what is missing.
[[nodiscard]] std::pair<std::string, std::string> parseWMClass(const X11Property& property);

/// The text of a property in UTF-8 or Latin-1, as `utf8` says, up to its first zero.
[[nodiscard]] std::string parseText(const X11Property& property, bool utf8);

/// _NET_WM_WINDOW_OPACITY as 0 to 1; 1 when it is absent.
[[nodiscard]] double parseOpacity(const X11Property& property);

/// The level that a window of these types has (CGWindowLevel.h, in the order of preference that _NET_WM_WINDOW_TYPE
/// gives): 0 for normal windows, dialogs and unknown types, kCGDesktopWindowLevel, kCGDockWindowLevel (20),
/// kCGTornOffMenuWindowLevel (3, toolbars and menus), kCGFloatingWindowLevel (3, utilities and splash screens),
/// kCGPopUpMenuWindowLevel (101), kCGHelpWindowLevel (200, tooltips), kCGStatusWindowLevel (25, notifications),
/// kCGDraggingWindowLevel (500).
[[nodiscard]] int windowLayer(const std::vector<std::uint32_t>& types, const X11Connection& connection);

/// A client's rectangle with the decoration around it, and the other way round. A client is at least 1 by 1.
[[nodiscard]] CGRect withExtents(const CGRect& client, const FrameExtents& extents);
[[nodiscard]] CGSize clientSize(CGSize frame, const FrameExtents& extents);

}  // namespace tallowin
