#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/clock.h"
#include "platform/geometry.h"
#include "platform/property_list.h"
#include "windows/window_info.h"

namespace tallowin {

/// The names under which layouts are kept.
namespace layout_name {
inline constexpr std::string_view manual = "manual";  ///< saved when the user asks for it
inline constexpr std::string_view automatic = "auto";
/// Names the file with the copy of the automatic layout that is put back when displays return. The layout in it is
/// called "auto" all the same.
inline constexpr std::string_view reconnect = "auto-setup";
}  // namespace layout_name

/// Which window of which application stood where, for one set of displays. Its JSON keys are its members' names.
struct WindowLayout {
  /// One window.
  struct Entry {
    std::string bundleID;   ///< of the application
    std::string title;      ///< may be empty
    CGRect frame;           ///< in screen coordinates, origin top left
    std::string spaceUUID;  ///< Space::id
    std::string displayID;  ///< Space::displayID
    bool operator==(const Entry&) const = default;
  };

  std::string name;
  Date savedAt;              ///< kept to the second
  std::string displaySetup;  ///< DisplaySet::key() of the displays it was made for
  std::vector<Entry> entries;
  bool operator==(const WindowLayout&) const = default;
};

[[nodiscard]] PropertyList toJson(const WindowLayout& layout);

/// Nothing when a member is missing or has the wrong type; without "entries" there are none, and an entry's missing
/// title or display reads as empty. Members that are not known are passed over.
[[nodiscard]] std::optional<WindowLayout> layoutFromJson(const PropertyList& json);

/// A window that takes an entry of a layout, by their positions in the lists.
struct LayoutMatch {
  std::size_t window = 0;
  std::size_t entry = 0;
  bool operator==(const LayoutMatch&) const = default;
};

/// Which window takes which entry. Window after window takes the first entry of its application with its title, unless
/// it has none, else the first one of its application; each entry is taken once. Windows without a bundle identifier
/// take none. In the windows' order.
[[nodiscard]] std::vector<LayoutMatch> matchLayout(const std::vector<WindowInfo>& windows,
                                                   const std::vector<WindowLayout::Entry>& entries);

}  // namespace tallowin
