#pragma once

#include <cstddef>
#include <vector>

#include "windows/window_info.h"
#include "windows/window_layout.h"

namespace tallowin {

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
