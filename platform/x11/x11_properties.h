#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/geometry.h"
#include "platform/identifiers.h"

namespace tallowin {

class X11Connection;

/// A window property as the server returned it. Absent properties and those of another type have format 0.
struct X11Property {
  int format = 0;     ///< bits of one element: 8, 16 or 32
  std::string bytes;  ///< the elements in the machine's byte order
  bool operator==(const X11Property&) const = default;
};

/// More desktops than this are taken for nonsense: the largest number that a window manager is known to offer is far
/// below, and every desktop becomes an entry in lists that are rebuilt at each change.
inline constexpr std::uint32_t maximumDesktopCount = 1024;

/// No more of a property is read.
inline constexpr std::uint32_t longestPropertyBytes = 64 * 1024;

/// The first element of a 32-bit property (CARDINAL, WINDOW), or nothing when it has none.
[[nodiscard]] std::optional<std::uint32_t> parseCardinal(const X11Property& property);

/// _NET_NUMBER_OF_DESKTOPS: 1 to maximumDesktopCount, else nothing.
[[nodiscard]] std::optional<std::size_t> parseDesktopCount(const X11Property& property);

/// A list of texts, each ended by a zero byte: at most `most` of them. The last one may lack its zero. Bytes that are
/// no UTF-8 become U+FFFD each. An empty list when the property is absent or not of bytes.
[[nodiscard]] std::vector<std::string> parseTexts(const X11Property& property, std::size_t most);

/// _NET_DESKTOP_NAMES: at most maximumDesktopCount texts.
[[nodiscard]] std::vector<std::string> parseDesktopNames(const X11Property& property);

/// The same text with every byte that is not part of well-formed UTF-8 replaced by U+FFFD.
[[nodiscard]] std::string validUtf8(std::string_view bytes);

/// The widths of the decoration around a client's window, in pixels (EWMH, _NET_FRAME_EXTENTS).
struct FrameExtents {
  std::uint32_t left = 0;
  std::uint32_t right = 0;
  std::uint32_t top = 0;
  std::uint32_t bottom = 0;
  bool operator==(const FrameExtents&) const = default;
};

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

/// What is known about the process that a window belongs to.
struct ProcessEvidence {
  std::optional<std::uint32_t> named;   ///< _NET_WM_PID, which the client says of itself
  std::string machine;                  ///< WM_CLIENT_MACHINE; empty when the client does not say
  std::optional<std::uint32_t> server;  ///< the process at the other end of the client's connection (X-Resource 1.2)
  bool operator==(const ProcessEvidence&) const = default;
};

/// Process ids that stand for something else begin here: above every real one (proc(5), pid_max is at most 2^22), and
/// positive, as callers take negative ones for applications that are not running.
inline constexpr ProcessID firstStandInPid = 1 << 30;

/// The names under which clients on this machine may give it: the host name, whole and up to its first dot, and
/// "localhost".
[[nodiscard]] std::vector<std::string> localMachineNames();

/// The process on this machine that a window belongs to. The server's word holds before the client's, which in a
/// container is a number of that container. Nothing for windows of other machines and where there is no evidence.
[[nodiscard]] std::optional<ProcessID> processOf(const ProcessEvidence& evidence,
                                                 const std::vector<std::string>& localNames);

/// The number that stands for the process of a window whose process is not known: the same for all windows of one
/// client of the server, for as long as that client is connected. `resourceMask` is the server's resource-id mask.
[[nodiscard]] ProcessID standInPid(std::uint32_t window, std::uint32_t resourceMask);

/// The file name of the program that a process runs; empty when that cannot be seen.
[[nodiscard]] std::string programName(ProcessID pid);

}  // namespace tallowin
