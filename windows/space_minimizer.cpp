#include "windows/space_minimizer.h"

#include <utility>

namespace tallowin {

std::size_t SpaceMinimizer::minimizeAll(const Space& space, const SpaceContents& contents) {
  std::vector<Minimized> minimized;
  for (const auto& window : contents.windows(space.managedID)) {
    const auto element = ax_.element(window.id, window.pid);
    if (element && !isMinimized(element) && ax_.setMinimized(element, true)) {
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
    if (const auto element = ax_.element(window.id, window.pid)) {
      ax_.setMinimized(element, false);
    }
  }
}

bool SpaceMinimizer::isMinimized(const AXUIElement& window) const {
  const auto value = accessibility_.AXUIElementCopyAttributeValue(window, "AXMinimized");
  const auto* const minimized = std::get_if<bool>(&value);
  return minimized != nullptr && *minimized;
}

Toast minimizedToast(std::size_t count) {
  return {"Minimized " + std::to_string(count) + " windows. Undo from the Tallowin menu.",
          "arrow.down.right.and.arrow.up.left"};
}

}  // namespace tallowin
