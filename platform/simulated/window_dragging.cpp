#include "platform/simulated/window_dragging.h"

#include <algorithm>

namespace tallowin {

void WindowDragging::begin(CGPoint location) {
  const auto found = std::ranges::find_if(state_.windows, [&](const SimulatedWindow& window) {
    return state_.isOnScreen(window) && window.frame.contains(location);
  });
  held_.reset();
  if (found != state_.windows.end() && location.y < found->frame.origin.y + titleBarHeight) {
    held_ = {found->number, location};
  }
}

void WindowDragging::pointerMoved(CGPoint location) {
  auto* const window = held_ ? state_.window(held_->number) : nullptr;
  if (window == nullptr) {
    return;
  }
  window->frame.origin.x += location.x - held_->pointer.x;
  window->frame.origin.y += location.y - held_->pointer.y;
  held_->pointer = location;
}

void WindowDragging::carryTo(ManagedSpaceID space) {
  if (auto* const window = held_ ? state_.window(held_->number) : nullptr) {
    window->spaces = {space};
  }
}

}  // namespace tallowin
