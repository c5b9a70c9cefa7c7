#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tallowin {

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

}  // namespace tallowin
