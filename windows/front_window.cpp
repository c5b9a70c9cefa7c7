#include "windows/front_window.h"

#include <algorithm>

#include "windows/window_info.h"

namespace tallowin {

std::optional<FrontWindow> frontmostWindow(const std::optional<std::vector<DesktopWindow>>& list,
                                           std::optional<ProcessID> owner) {
  if (!list) {
    return {};
  }
  const auto found = std::ranges::find_if(*list, [&](const DesktopWindow& window) {
    // Strictly larger, where a window that is only listed may be just as large.
    return window.layer == 0 && (!owner || window.pid == *owner) && window.frame.size.width > smallestWindow &&
           window.frame.size.height > smallestWindow;
  });
  return found != list->end() ? std::optional(FrontWindow{found->id, found->pid, found->frame}) : std::nullopt;
}

}  // namespace tallowin
