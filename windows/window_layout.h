#pragma once

#include <cstddef>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/app_paths.h"
#include "base/record_file.h"
#include "core/space.h"
#include "platform/clock.h"
#include "platform/displays.h"
#include "platform/geometry.h"
#include "platform/property_list.h"
#include "windows/space_contents.h"

namespace tallowin {

/// The names under which layouts are kept.
namespace layout_name {
inline constexpr std::string_view manual = "manual";  ///< saved when the user asks for it
inline constexpr std::string_view automatic = "auto";
/// Names the file with the copy of the automatic layout that is put back when displays return. The layout in it is
/// called "auto" all the same.
inline constexpr std::string_view reconnect = "auto-setup";
}  // namespace layout_name

/// A rectangle as records hold it: [[x, y], [width, height]].
[[nodiscard]] PropertyList toJson(const CGRect& frame);

/// Nothing for anything but two pairs of numbers.
[[nodiscard]] std::optional<CGRect> frameFromJson(const PropertyList& json);

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
  std::string displaySetup;  ///< displaySetKey() of the displays it was made for
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

/// The name of the file that holds the layout of this name for the displays with this key: both with "--" between them,
/// every "/" replaced by "-". What is longer than 120 characters (Unicode scalar values; a byte that is no UTF-8 counts
/// as one) is cut after 60, and the FNV-1a hash of the whole stands in place of the rest.
[[nodiscard]] std::string layoutFileName(std::string_view name, std::string_view displaySetup);

/// What version 0.1.0 called that file: the hash was the standard library's, which another library computes otherwise.
[[nodiscard]] std::string earlierLayoutFileName(std::string_view name, std::string_view displaySetup);

/// The folder "Layouts" in the support folder, with one file per layout name and set of displays. Main thread only.
class LayoutFiles {
 public:
  LayoutFiles(Storage& storage, const AppPaths& paths) : storage_(storage), paths_(paths) {}

  /// Writes the layout under this name for the displays that it was made for, in place of an older one; what stands
  /// there and cannot be understood is kept aside. What cannot be written counts all the same, and is tried again.
  void write(const WindowLayout& layout, std::string_view name);

  /// The layout of this name for these displays. Nothing when there is none, or when the file cannot be read or
  /// understood, which is logged; the file stays as it is.
  [[nodiscard]] std::optional<WindowLayout> read(std::string_view name, std::string_view displaySetup);

 private:
  [[nodiscard]] RecordFile& file(std::string_view name, std::string_view displaySetup);

  Storage& storage_;
  const AppPaths& paths_;
  std::map<std::string, RecordFile> files_;  ///< those that were used, by their names in the folder
};

/// The displays that are connected now, sorted as bytes: those that the platform names, or, where it names none, those
/// of the snapshot. The platform comes first because some desktops have one set of Spaces for all their displays.
[[nodiscard]] std::vector<std::string> connectedDisplays(Displays& displays, const SpaceSnapshot& snapshot);

/// The key under which layouts and profiles are kept for these displays: their identifiers joined with "+".
[[nodiscard]] std::string displaySetKey(const std::vector<std::string>& displays);

/// Where the windows of one Space go before its display is unplugged.
struct SpaceEjection {
  Space from;
  Space to;
  bool operator==(const SpaceEjection&) const = default;
};

/// The display that stays: the first built-in one of the snapshot, else the one with the menu bar. Nothing only without
/// displays.
[[nodiscard]] std::optional<DisplaySpaces> homeDisplay(Displays& displays, const SpaceSnapshot& snapshot);

/// For every other display, where the windows of its ordinary Spaces go: the Space at one position to the home
/// display's ordinary Space at the same position, or to the last one when it has fewer. Empty when it has none.
[[nodiscard]] std::vector<SpaceEjection> planEjection(const SpaceSnapshot& snapshot, const DisplaySpaces& home);

/// Where a window goes before the monitor that it is on is unplugged.
struct WindowEjection {
  WindowInfo window;
  CGRect frame;
  bool operator==(const WindowEjection&) const = default;
};

/// Which windows leave their monitors for the one that stays: the first built-in one, else the primary one, else the
/// first. They keep their places in the work area, and their sizes, as far as those fit into that of the monitor that
/// stays. A window counts as on the monitor that shows most of it; one that none shows stays.
[[nodiscard]] std::vector<WindowEjection> planEjection(const std::vector<WindowInfo>& windows,
                                                       const std::vector<Monitor>& monitors);

}  // namespace tallowin
