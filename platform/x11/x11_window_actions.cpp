#include "platform/x11/x11_window_actions.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "platform/x11/x11_window_properties.h"

namespace tallowin {

namespace {

constexpr std::uint32_t pagerSource = 2;         // EWMH, source indication: a direct action of the user
constexpr std::uint32_t iconicState = 3;         // ICCCM, WM_STATE
constexpr std::uint32_t addProperty = 1;         // EWMH, _NET_WM_STATE_ADD
constexpr std::uint32_t removeProperty = 0;      // EWMH, _NET_WM_STATE_REMOVE
constexpr std::uint32_t above = 0;               // X protocol, ConfigureWindow stack mode
constexpr std::uint32_t northWestGravity = 1;    // X protocol, bit gravity: the frame's corner
constexpr std::uint32_t staticGravity = 10;      // the client's own corner
constexpr std::uint32_t positionGiven = 3 << 8;  // EWMH, _NET_MOVERESIZE_WINDOW
constexpr std::uint32_t sizeGiven = 12 << 8;
constexpr std::uint32_t fromPager = pagerSource << 12;

constexpr Duration untilOrdinary = std::chrono::milliseconds(50);
constexpr Duration untilShown = std::chrono::milliseconds(40);
constexpr Duration untilInFront = std::chrono::milliseconds(100);

/// What a request carries for a coordinate, negative ones as two's complement.
std::uint32_t word(double value) {
  constexpr double lowest = std::numeric_limits<std::int16_t>::min();
  constexpr double highest = std::numeric_limits<std::int16_t>::max();
  return static_cast<std::uint32_t>(
      static_cast<std::int32_t>(std::fmin(std::fmax(std::round(value), lowest), highest)));
}

}  // namespace

void X11WindowActions::send(xcb_window_t window, X11Atom message, const std::array<std::uint32_t, 5>& data) {
  connection_.sendToWindowManager(window, message, data);
}

void X11WindowActions::removeState(xcb_window_t window, X11Atom first, std::optional<X11Atom> second) {
  send(window, X11Atom::netWmState,
       {removeProperty, connection_.atom(first), second ? connection_.atom(*second) : 0, pagerSource, 0});
}

bool X11WindowActions::minimize(xcb_window_t window) {
  return reader_.read(window) && minimize(std::vector{window});
}

bool X11WindowActions::minimize(const std::vector<xcb_window_t>& windows) {
  for (const auto window : windows) {
    send(window, X11Atom::wmChangeState, {iconicState, 0, 0, 0, 0});
    // openbox takes a window on another desktop for minimised already, and hears this only.
    send(window, X11Atom::netWmState, {addProperty, connection_.atom(X11Atom::netWmStateHidden), 0, pagerSource, 0});
  }
  return refusals_.confirm(X11Refusals::Request::minimize, [&] {
    return std::ranges::all_of(windows, [&](xcb_window_t number) {
      const auto window = reader_.read(number);
      return !window || window->hidden;
    });
  });
}

bool X11WindowActions::restore(xcb_window_t number) {
  const auto window = reader_.read(number);
  if (!window || !window->hidden) {
    return window.has_value();
  }
  const auto shown = [&] {
    const auto now = reader_.read(number);
    return now && !now->hidden;
  };
  const bool here =
      !window->desktop || window->desktop == X11Connection::allDesktops || window->desktop == desktops_.read().current;
  if (here) {
    makeActive(number);
    if (waitUntil(shown, untilShown)) {
      return true;
    }
  }
  // A client that maps its window again wants it back (ICCCM, Changing Window State); some window managers hear of that
  // only, others of the state only.
  removeState(number, X11Atom::netWmStateHidden);
  xcb_map_window(connection_.raw(), number);
  connection_.flush();
  const bool restored = waitUntil(shown, untilShown);
  if (restored && window->desktop) {
    connection_.moveToDesktop(number, *window->desktop);  // metacity fetches it to the desktop in front
  }
  return restored;
}

void X11WindowActions::moveToDesktop(xcb_window_t number, std::uint32_t index, const X11DesktopState& state) {
  const auto window = losesMinimizedWindows(state) ? reader_.read(number) : std::nullopt;
  const bool minimized = window && window->hidden;
  if (minimized) {
    restore(number);
  }
  connection_.moveToDesktop(number, index);
  if (minimized) {
    minimize(number);
  }
}

bool X11WindowActions::setPosition(xcb_window_t number, CGPoint position) {
  const auto window = readOrdinary(number);
  if (!window) {
    return false;
  }
  // Where the decoration is not known the frame is the client's own rectangle.
  const auto gravity = window->extents ? northWestGravity : staticGravity;
  send(number, X11Atom::netMoveresizeWindow,
       {gravity | positionGiven | fromPager, word(position.x), word(position.y), 0, 0});
  return connection_.alive();
}

bool X11WindowActions::setSize(xcb_window_t number, CGSize size) {
  const auto window = readOrdinary(number);
  if (!window) {
    return false;
  }
  const auto client = clientSize(size, window->extents.value_or(FrameExtents{}));
  send(number, X11Atom::netMoveresizeWindow,
       {northWestGravity | sizeGiven | fromPager, 0, 0, word(client.width), word(client.height)});
  return connection_.alive();
}

std::optional<X11Window> X11WindowActions::readOrdinary(xcb_window_t number) {
  auto window = reader_.read(number);
  const auto isOrdinary = [&] { return !window || (!window->maximized && !window->fullscreen); };
  if (isOrdinary()) {
    return window;
  }
  removeState(number, X11Atom::netWmStateMaximizedVert, X11Atom::netWmStateMaximizedHorz);
  removeState(number, X11Atom::netWmStateFullscreen);
  // One that keeps its state may take the frame all the same.
  (void)waitUntil(
      [&] {
        window = reader_.read(number);
        return isOrdinary();
      },
      untilOrdinary);
  return window;
}

bool X11WindowActions::raise(xcb_window_t number) {
  const auto window = reader_.read(number);
  if (!window) {
    return false;
  }
  if (isInFront(number)) {
    return true;  // also so that this is not taken for an effect of the request
  }
  send(number, X11Atom::netRestackWindow, {pagerSource, 0, above, 0, 0});
  if (refusals_.confirm(X11Refusals::Request::restack, [&] { return isInFront(number); })) {
    return true;
  }
  const bool here =
      !window->desktop || window->desktop == X11Connection::allDesktops || window->desktop == desktops_.read().current;
  if (here) {
    makeActive(number);
  }
  return here;
}

/// Whether it is the first of the ordinary windows of its desktop. Windows that are kept above the others do not count.
bool X11WindowActions::isInFront(xcb_window_t number) {
  const auto snapshot = reader_.read();
  const auto* window = snapshot.find(number);
  if (window == nullptr) {
    return false;
  }
  const auto first = std::ranges::find_if(snapshot.windows, [&](const X11Window& other) {
    return other.id == number || (other.layer == 0 && !other.hidden && !other.fullscreen &&
                                  other.above == window->above && other.desktop == window->desktop);
  });
  return first->id == number;
}

bool X11WindowActions::activate(xcb_window_t number) {
  const auto window = reader_.read(number);
  if (!window || !bringDesktop(*window)) {
    return false;
  }
  makeActive(number);
  return connection_.alive();
}

bool X11WindowActions::bringDesktop(const X11Window& window) {
  const auto state = desktops_.read();
  if (!window.desktop || *window.desktop == X11Connection::allDesktops || !state.current ||
      *window.desktop == *state.current) {
    return true;
  }
  send(connection_.root(), X11Atom::netCurrentDesktop, {*window.desktop, time_.now(), 0, 0, 0});
  return waitUntil([&] { return desktops_.read().current == *window.desktop; }, untilInFront);
}

void X11WindowActions::makeActive(xcb_window_t window) {
  send(window, X11Atom::netActiveWindow, {pagerSource, time_.now(), XCB_WINDOW_NONE, 0, 0});
}

bool X11WindowActions::close(xcb_window_t window) {
  if (!reader_.read(window)) {
    return false;
  }
  send(window, X11Atom::netCloseWindow, {time_.now(), pagerSource, 0, 0, 0});
  return connection_.alive();
}

}  // namespace tallowin
