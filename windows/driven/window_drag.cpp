#include "windows/driven/window_drag.h"

#include <algorithm>
#include <cassert>
#include <chrono>
#include <utility>

#include "windows/driven/synthetic_input.h"

namespace tallowin {

namespace {

using namespace std::chrono_literals;
using synthetic_input::postMouse;

/// The window server must have seen the button go down before the Space changes under it...
constexpr Duration holdTime = 120ms;
/// ...and the change must be over before the button is released.
constexpr Duration switchTime = 550ms;

// The grab point, in points from the window's top left corner.
constexpr double farthestFromLeftEdge = 80;
constexpr double belowTopEdge = 12;

/// A press without any movement would be a click.
constexpr double dragDistance = 4;

}  // namespace

WindowDrag::~WindowDrag() {
  if (held_) {
    postMouse(events_, CGMouseEventType::leftMouseUp, draggedTo());
  }
}

CGPoint WindowDrag::grabPoint(const CGRect& frame) {
  return {frame.origin.x + std::min(frame.size.width / 3, farthestFromLeftEdge), frame.origin.y + belowTopEdge};
}

CGPoint WindowDrag::draggedTo() const {
  const auto grabbed = grabPoint(held_->task.frame);
  return {grabbed.x + dragDistance, grabbed.y};
}

void WindowDrag::begin(Task task) {
  assert(!isUnderWay());
  if (!accessibility_.AXIsProcessTrustedWithOptions(true)) {
    task.done(false);
    return;
  }
  const auto grabbed = grabPoint(task.frame);
  held_ = {std::move(task), synthetic_input::pointerLocation(events_)};
  postMouse(events_, CGMouseEventType::mouseMoved, grabbed);
  postMouse(events_, CGMouseEventType::leftMouseDown, grabbed);
  postMouse(events_, CGMouseEventType::leftMouseDragged, draggedTo());
  next_ = mainQueue_.after(holdTime, [this] { switchSpace(); });
}

void WindowDrag::switchSpace() {
  next_ = mainQueue_.after(switchTime, [this] { release(); });
  held_->task.switchSpace();
}

void WindowDrag::release() {
  postMouse(events_, CGMouseEventType::leftMouseUp, draggedTo());
  const auto held = *std::exchange(held_, std::nullopt);
  const bool arrived = held.task.hasArrived();
  if (!arrived) {
    events_.CGWarpMouseCursorPosition(held.pointerBefore);
  }
  held.task.done(arrived);
}

}  // namespace tallowin
