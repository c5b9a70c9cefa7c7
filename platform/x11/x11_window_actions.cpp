#include "platform/x11/x11_window_actions.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "platform/x11/x11_properties.h"

namespace tallowin {

namespace {

constexpr std::uint32_t iconicState = 3;         // ICCCM, WM_STATE
constexpr std::uint32_t addProperty = 1;         // EWMH, _NET_WM_STATE_ADD
constexpr std::uint32_t removeProperty = 0;      // EWMH, _NET_WM_STATE_REMOVE
constexpr std::uint32_t above = 0;               // X protocol, ConfigureWindow stack mode
constexpr std::uint32_t northWestGravity = 1;    // X protocol, bit gravity: the frame's corner
constexpr std::uint32_t staticGravity = 10;      // the client's own corner
constexpr std::uint32_t positionGiven = 3 << 8;  // EWMH, _NET_MOVERESIZE_WINDOW
constexpr std::uint32_t sizeGiven = 12 << 8;
constexpr std::uint32_t fromPager = X11Connection::pagerSource << 12;

constexpr Duration untilOrdinary = std::chrono::milliseconds(50);
constexpr Duration untilRestored = std::chrono::milliseconds(40);
constexpr Duration requestPatience = std::chrono::milliseconds(100);

/// Whether the window manager writes down a minimised window's move without making it (fluxbox): what it says and where
/// the window is differ for good then, so such a window has to be shown first.
bool losesMinimizedWindows(const X11DesktopState& state) {
  return state.managerName == "Fluxbox";
}

bool isShown(const X11Window& window) {
  return !window.hidden;
}

/// What a request carries for a coordinate, negative ones as two's complement.
std::uint32_t word(double value) {
  constexpr double lowest = std::numeric_limits<std::int16_t>::min();
  constexpr double highest = std::numeric_limits<std::int16_t>::max();
  return static_cast<std::uint32_t>(
      static_cast<std::int32_t>(std::fmin(std::fmax(std::round(value), lowest), highest)));
}

}  // namespace

bool X11Refusals::isRefused(Request request, const X11DesktopState& desktops) {
  // The number alone is no guide: one that is started after another is often given the ids of the one before.
  if (std::pair running(desktops.checkWindow, desktops.managerName); running != windowManager_) {
    windowManager_ = std::move(running);
    worked_.clear();
  }
  const auto found = worked_.find(request);
  // i3 knows no minimised windows.
  return found != worked_.end() ? !found->second : desktops.dynamic && request == Request::minimize;
}

void X11Waits::until(std::function<bool()> happened, Duration limit, std::function<void(bool)> then) {
  const int id = ++latest_;
  waits_[id] = {std::move(happened), std::move(then), queue_.after(limit, [this, id] { look(id, true); })};
}

void X11Waits::lookAgain() {
  std::vector<int> ids;
  for (const auto& [id, wait] : waits_) {
    ids.push_back(id);
  }
  for (const auto id : ids) {
    look(id, false);
  }
}

void X11Waits::look(int id, bool isLast) {
  const auto found = waits_.find(id);
  if (found == waits_.end()) {
    return;
  }
  const bool happened = found->second.happened();
  if (happened || isLast) {
    const auto node = waits_.extract(id);
    node.mapped().then(happened);
  }
}

std::function<bool()> X11WindowActions::is(xcb_window_t number, std::function<bool(const X11Window&)> wanted) {
  return [this, number, wanted = std::move(wanted)] {
    const auto now = reader_.read(number);
    return !now || wanted(*now);
  };
}

void X11WindowActions::writeState(xcb_window_t window, std::uint32_t change, X11Atom first,
                                  std::optional<X11Atom> second) {
  connection_.writeToWindowManager(
      window, X11Atom::netWmState,
      {change, connection_.atom(first), second ? connection_.atom(*second) : 0, X11Connection::pagerSource, 0});
}

bool X11WindowActions::isHere(const X11Window& window) {
  return !window.desktop || window.desktop == X11Connection::allDesktops ||
         window.desktop == desktops_.present().desktops.current;
}

bool X11WindowActions::minimize(xcb_window_t number) {
  const auto window = reader_.read(number);
  if (!window || window->hidden) {
    return false;
  }
  const bool isRefused = refusals_.isRefused(X11Refusals::Request::minimize, desktops_.present().desktops);
  minimize(std::vector{number});  // another window may have been refused for a reason of its own
  return !isRefused && connection_.alive();
}

void X11WindowActions::minimize(const std::vector<xcb_window_t>& windows) {
  for (const auto window : windows) {
    connection_.writeToWindowManager(window, X11Atom::wmChangeState, {iconicState, 0, 0, 0, 0});
    // openbox takes a window on another desktop for minimised already, and hears this only.
    writeState(window, addProperty, X11Atom::netWmStateHidden);
  }
  connection_.flush();
  const auto isMinimized = [this](xcb_window_t window) { return is(window, &X11Window::hidden)(); };
  waits_.until([=] { return std::ranges::any_of(windows, isMinimized); }, requestPatience,
               [this](bool happened) { refusals_.note(X11Refusals::Request::minimize, happened); });
}

bool X11WindowActions::restore(xcb_window_t number, std::function<void()> then) {
  const auto window = reader_.read(number);
  if (!window) {
    return false;
  }
  if (!window->hidden) {
    if (then) {
      then();
    }
  } else if (isHere(*window)) {
    makeActive(number);
    waits_.until(is(number, isShown), untilRestored, [this, window = *window, then = std::move(then)](bool happened) {
      if (!happened) {
        mapAgain(window, then);
      } else if (then) {
        then();
      }
    });
  } else {
    mapAgain(*window, then);
  }
  return connection_.alive();
}

/// A client that maps its window again wants it back (ICCCM, Changing Window State); some window managers hear of that
/// only, others of the state only.
void X11WindowActions::mapAgain(const X11Window& window, const std::function<void()>& then) {
  writeState(window.id, removeProperty, X11Atom::netWmStateHidden);
  xcb_map_window(connection_.raw(), window.id);
  connection_.flush();
  waits_.until(is(window.id, isShown), untilRestored, [this, window, then](bool happened) {
    if (happened && window.desktop) {
      connection_.writeMoveToDesktop(window.id, *window.desktop);  // metacity fetches it to the desktop in front
      connection_.flush();
    }
    if (then) {
      then();
    }
  });
}

void X11WindowActions::moveToDesktop(xcb_window_t number, std::uint32_t index, const X11DesktopState& state) {
  const auto window = losesMinimizedWindows(state) ? reader_.read(number) : std::nullopt;
  if (window && window->hidden) {
    restore(number, [this, number, index] {
      connection_.writeMoveToDesktop(number, index);
      minimize(std::vector{number});
    });
  } else {
    connection_.writeMoveToDesktop(number, index);
    connection_.flush();
  }
}

bool X11WindowActions::setFrame(xcb_window_t number, const CGRect& frame) {
  const auto window = reader_.read(number);
  if (!window) {
    return false;
  }
  if (!window->maximized && !window->fullscreen) {
    if (window->frame != frame) {
      moveResize(*window, frame);
    }
    return connection_.alive();
  }
  writeState(number, removeProperty, X11Atom::netWmStateMaximizedVert, X11Atom::netWmStateMaximizedHorz);
  writeState(number, removeProperty, X11Atom::netWmStateFullscreen);
  connection_.flush();
  const auto isOrdinary = [](const X11Window& now) { return !now.maximized && !now.fullscreen; };
  // One that keeps its state may take the frame all the same.
  waits_.until(is(number, isOrdinary), untilOrdinary, [this, number, frame](bool /*happened*/) {
    moveResize(number, frame);
    // fluxbox tells only later that an ordinary window has its borders again, around which the size counts.
    const auto isInPlace = [frame](const X11Window& now) { return now.frame == frame; };
    waits_.until(is(number, isInPlace), requestPatience, [this, number, frame](bool happened) {
      if (!happened) {
        moveResize(number, frame);
      }
    });
  });
  return connection_.alive();
}

void X11WindowActions::moveResize(xcb_window_t number, const CGRect& frame) {
  if (const auto window = reader_.read(number)) {
    moveResize(*window, frame);
  }
}

void X11WindowActions::moveResize(const X11Window& window, const CGRect& frame) {
  const auto client = clientSize(frame.size, window.extents.value_or(FrameExtents{}));
  // Where the decoration is not known the frame is the client's own rectangle.
  const auto gravity = window.extents ? northWestGravity : staticGravity;
  connection_.sendToWindowManager(window.id, X11Atom::netMoveresizeWindow,
                                  {gravity | positionGiven | sizeGiven | fromPager, word(frame.origin.x),
                                   word(frame.origin.y), word(client.width), word(client.height)});
}

bool X11WindowActions::raise(xcb_window_t number) {
  const auto window = reader_.read(number);
  if (!window) {
    return false;
  }
  const auto activateIfHere = [this](const X11Window& which) {
    if (isHere(which)) {
      makeActive(which.id);
    }
  };
  if (refusals_.isRefused(X11Refusals::Request::restack, desktops_.present().desktops)) {
    activateIfHere(*window);
    return connection_.alive();
  }
  if (isInFront(number)) {
    return true;  // also so that this is not taken for an effect of the request
  }
  connection_.sendToWindowManager(number, X11Atom::netRestackWindow, {X11Connection::pagerSource, 0, above, 0, 0});
  const auto activations = activations_;
  waits_.until([this, number] { return isInFront(number); }, requestPatience,
               [this, window = *window, activateIfHere, activations](bool happened) {
                 refusals_.note(X11Refusals::Request::restack, happened);
                 if (!happened && activations == activations_) {
                   activateIfHere(window);
                 }
               });
  return connection_.alive();
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
  if (!window) {
    return false;
  }
  const auto activation = ++activations_;
  if (isHere(*window) || !desktops_.present().desktops.current) {
    makeActive(number);
    return connection_.alive();
  }
  connection_.sendToWindowManager(connection_.root(), X11Atom::netCurrentDesktop,
                                  {*window->desktop, time_.now(), 0, 0, 0});
  waits_.until([this, desktop = *window->desktop] { return desktops_.read().current == desktop; }, requestPatience,
               [this, number, activation](bool happened) {
                 if (happened && activation == activations_) {
                   makeActive(number);
                 }
               });
  return connection_.alive();
}

void X11WindowActions::makeActive(xcb_window_t window) {
  connection_.sendToWindowManager(window, X11Atom::netActiveWindow,
                                  {X11Connection::pagerSource, time_.now(), XCB_WINDOW_NONE, 0, 0});
}

bool X11WindowActions::close(xcb_window_t window) {
  if (!reader_.read(window)) {
    return false;
  }
  connection_.sendToWindowManager(window, X11Atom::netCloseWindow, {time_.now(), X11Connection::pagerSource, 0, 0, 0});
  return connection_.alive();
}

}  // namespace tallowin
