#include "platform/x11/x11_window_carrier.h"

#include <utility>

namespace tallowin {

namespace {

// What window managers need between the steps; shorter waits lose the window under some of them.
constexpr Duration untilOnAllDesktops = std::chrono::milliseconds(60);
constexpr Duration untilSwitched = std::chrono::milliseconds(150);

}  // namespace

X11WindowCarrier::X11WindowCarrier(X11Connection& connection, X11DesktopReader& desktops, MainQueue& queue,
                                   std::function<void(ManagedSpaceID)> switchTo)
    : connection_(connection), desktops_(desktops), queue_(queue), switchTo_(std::move(switchTo)) {}

X11WindowCarrier::~X11WindowCarrier() {
  if (carried_) {
    settle();
  }
}

bool X11WindowCarrier::carryTo(ManagedSpaceID space) {
  if (!carried_) {
    carried_ = draggedWindow();
  }
  if (!carried_) {
    return false;
  }
  target_ = space;
  moveToDesktop(X11Connection::allDesktops);
  next_ = queue_.after(untilOnAllDesktops, [this] {
    switchTo_(target_);
    next_ = queue_.after(untilSwitched, [this] { settle(); });
  });
  return true;
}

void X11WindowCarrier::settle() {
  const auto state = desktops_.read();
  const auto index = state.indexOf(target_);
  // A desktop that has gone in the meantime must not leave the window on all of the others.
  moveToDesktop(static_cast<std::uint32_t>(index.value_or(state.current.value_or(0))));
  carried_.reset();
}

void X11WindowCarrier::moveToDesktop(std::uint32_t desktop) {
  connection_.writeMoveToDesktop(*carried_, desktop);
  connection_.flush();
}

/// The active window, when the left button is held over its frame: over the window itself it does something else.
std::optional<xcb_window_t> X11WindowCarrier::draggedWindow() {
  const auto view = desktops_.present();
  const auto active = view.activeWindow;
  if ((view.held & XCB_BUTTON_MASK_1) == 0 || view.underPointer == XCB_WINDOW_NONE || active == XCB_WINDOW_NONE) {
    return std::nullopt;
  }
  const auto insideCookie =
      xcb_translate_coordinates(connection_.raw(), connection_.root(), active,
                                static_cast<std::int16_t>(view.pointer.x), static_cast<std::int16_t>(view.pointer.y));
  const auto sizeCookie = xcb_get_geometry(connection_.raw(), active);
  const auto inside = connection_.reply(xcb_translate_coordinates_reply, insideCookie);
  const auto size = connection_.reply(xcb_get_geometry_reply, sizeCookie);
  const bool overWindow = inside && size && inside->dst_x >= 0 && inside->dst_y >= 0 && inside->dst_x < size->width &&
                          inside->dst_y < size->height;
  return !overWindow && topLevelOf(active) == view.underPointer ? std::optional(active) : std::nullopt;
}

/// The child of the root window that holds a window; 0 when that has gone.
xcb_window_t X11WindowCarrier::topLevelOf(xcb_window_t window) {
  while (window != XCB_WINDOW_NONE) {
    const auto tree = connection_.reply(xcb_query_tree_reply, xcb_query_tree(connection_.raw(), window));
    const auto parent = tree ? tree->parent : xcb_window_t{XCB_WINDOW_NONE};
    if (parent == connection_.root()) {
      break;
    }
    window = parent;
  }
  return window;
}

}  // namespace tallowin
