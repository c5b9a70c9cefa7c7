#include "platform/x11/x11_windows.h"

#include <algorithm>
#include <utility>

namespace tallowin {

namespace {

/// Windows that are dragged change all the time.
constexpr Duration changesBurst = std::chrono::milliseconds(100);

/// The properties of windows that a list is made from.
constexpr X11Atom listedProperties[] = {X11Atom::netWmName,     X11Atom::netWmDesktop,      X11Atom::netWmState,
                                        X11Atom::netWmPid,      X11Atom::netWmWindowType,   X11Atom::netFrameExtents,
                                        X11Atom::netClientList, X11Atom::netWmWindowOpacity};

}  // namespace

DesktopWindow X11Windows::describe(const X11Window& window, WindowNumber number,
                                   const X11ApplicationSnapshot& snapshot) const {
  const auto* owner = snapshot.find(window.pid);
  return {.id = number,
          .pid = window.pid,
          .ownerName = owner != nullptr && !owner->name.empty() ? std::optional(owner->name) : std::nullopt,
          .title = window.title,
          .frame = window.frame,
          .layer = window.layer,
          .alpha = window.alpha,
          .spaces = spacesShowing(snapshot.screen.view.desktops, window.desktop, window.sticky)};
}

std::optional<std::vector<DesktopWindow>> X11Windows::list(WindowScope scope) {
  const auto snapshot = applications_.refresh();
  if (!connection_.alive()) {
    return std::nullopt;
  }
  std::vector<DesktopWindow> windows;
  for (const auto& window : snapshot->screen.windows) {
    const auto number = reader_.numbers().number(window.id);
    // What is behind all others is the desktop's own picture.
    const bool isWanted = window.layer >= 0 && (scope == WindowScope::all || snapshot->screen.isOnScreen(window));
    if (number && isWanted) {
      windows.push_back(describe(window, *number, *snapshot));
    }
  }
  return windows;
}

std::optional<DesktopWindow> X11Windows::window(WindowNumber number) {
  const auto id = reader_.numbers().window(number);
  const auto snapshot = applications_.latest();
  auto read = id ? reader_.read(*id) : std::nullopt;
  if (!read) {
    return std::nullopt;
  }
  auto described = describe(*read, number, *snapshot);
  described.spaces = reader_.spacesOf(*id);
  return described;
}

std::optional<WindowNumber> X11Windows::focused(ProcessID pid) {
  const auto active = applications_.activeWindow();
  if (const auto* owner = applications_.latest()->owner(active); owner != nullptr && owner->pid == pid) {
    return reader_.numbers().number(active);
  }
  const auto snapshot = applications_.refresh();  // the order of now
  const auto front = std::ranges::find_if(
      snapshot->screen.windows, [pid](const X11Window& window) { return window.pid == pid && window.layer == 0; });
  return front == snapshot->screen.windows.end() ? std::nullopt : reader_.numbers().number(front->id);
}

bool X11Windows::raise(const WindowRef& window) {
  const auto id = reader_.numbers().window(window.id);
  if (!id || !actions_.raise(*id)) {
    return false;
  }
  applications_.setMainWindow(window.pid, *id);
  return true;
}

bool X11Windows::setFrame(const WindowRef& window, const CGRect& frame) {
  const auto id = reader_.numbers().window(window.id);
  return id && actions_.setFrame(*id, frame);
}

bool X11Windows::minimize(const WindowRef& window) {
  const auto id = reader_.numbers().window(window.id);
  return id && actions_.minimize(*id);
}

bool X11Windows::unminimize(const WindowRef& window) {
  const auto id = reader_.numbers().window(window.id);
  return id && actions_.restore(*id);
}

bool X11Windows::close(const WindowRef& window, Duration /*patience*/) {
  const auto id = reader_.numbers().window(window.id);
  return id && actions_.close(*id);
}

bool X11Windows::observe(std::function<void()> observer) {
  observer_ = std::move(observer);
  // Frames are children of the root window, and not every window manager tells its clients where they are.
  connection_.selectEvents(connection_.root(), XCB_EVENT_MASK_PROPERTY_CHANGE | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY);
  connection_.flush();
  return connection_.alive();
}

bool X11Windows::isChange(const xcb_generic_event_t& event) const {
  switch (x11EventType(event)) {
    case XCB_PROPERTY_NOTIFY: {
      const auto atom = x11EventAs<xcb_property_notify_event_t>(event).atom;
      return atom == XCB_ATOM_WM_NAME ||
             std::ranges::any_of(listedProperties, [&](X11Atom listed) { return atom == connection_.atom(listed); });
    }
    case XCB_CONFIGURE_NOTIFY:
    case XCB_CIRCULATE_NOTIFY:
    case XCB_REPARENT_NOTIFY:
      return true;
    default:
      return false;
  }
}

void X11Windows::handle(const xcb_generic_event_t& event) {
  if (observer_ && isChange(event)) {
    hasChanged_ = true;
    if (!telling_) {
      tellAfter(Duration::zero());
    }
  }
}

void X11Windows::tellAfter(Duration delay) {
  telling_ = queue_.after(delay, [this] {
    telling_.cancel();
    if (std::exchange(hasChanged_, false)) {
      tellAfter(changesBurst);
      observer_();
    }
  });
}

}  // namespace tallowin
