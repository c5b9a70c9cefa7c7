#include "windows/space_minimizer.h"

#include <utility>

namespace tallowin {

std::size_t SpaceMinimizer::minimizeAll(const Space& space, const SpaceContents& contents) {
  std::vector<WindowRef> minimized;
  for (const auto& window : contents.windows(space.managedID)) {
    if (windows_.minimize({window.id, window.pid})) {
      minimized.push_back({window.id, window.pid});
    }
  }
  if (!minimized.empty()) {
    lastMinimized_ = minimized;
  }
  return minimized.size();
}

void SpaceMinimizer::undo() {
  for (const auto& window : std::exchange(lastMinimized_, {})) {
    windows_.unminimize(window);
  }
}

Toast minimizedToast(std::size_t count) {
  return {"Minimized " + std::to_string(count) + " windows. Undo from the Tallowin menu.",
          "arrow.down.right.and.arrow.up.left"};
}

}  // namespace tallowin
