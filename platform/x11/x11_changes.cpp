#include "platform/x11/x11_changes.h"

#include <xcb/randr.h>

namespace tallowin {

namespace {

/// Docking a computer changes its outputs one after the other.
constexpr Duration screensBurst = std::chrono::milliseconds(50);

void selectEvents(X11Connection& connection, xcb_window_t window, std::uint32_t mask) {
  xcb_change_window_attributes(connection.raw(), window, XCB_CW_EVENT_MASK, &mask);
}

template <typename Event>
const Event& as(const xcb_generic_event_t& event) {
  return reinterpret_cast<const Event&>(event);
}

}  // namespace

X11Changes::X11Changes(X11Connection& connection, X11DesktopReader& desktops, MainQueue& queue, Listeners listeners)
    : connection_(connection),
      desktops_(desktops),
      queue_(queue),
      listeners_(listeners),
      randrEvent_(connection.firstEvent(xcb_randr_id)) {
  selectEvents(connection_, connection_.root(), XCB_EVENT_MASK_PROPERTY_CHANGE);
  if (randrEvent_) {
    xcb_randr_select_input(
        connection_.raw(), connection_.root(),
        XCB_RANDR_NOTIFY_MASK_SCREEN_CHANGE | XCB_RANDR_NOTIFY_MASK_CRTC_CHANGE | XCB_RANDR_NOTIFY_MASK_OUTPUT_CHANGE);
  }
  windowManagerChanged();
}

void X11Changes::handle(const xcb_generic_event_t& event) {
  const int type = event.response_type & 0x7F;  // without the bit that tells sent events
  if (type == XCB_PROPERTY_NOTIFY) {
    propertyChanged(as<xcb_property_notify_event_t>(event));
  } else if (type == XCB_DESTROY_NOTIFY && as<xcb_destroy_notify_event_t>(event).window == checkWindow_) {
    windowManagerChanged();
    tell(spacesChanged);
  } else if (randrEvent_ &&
             (type == *randrEvent_ + XCB_RANDR_SCREEN_CHANGE_NOTIFY || type == *randrEvent_ + XCB_RANDR_NOTIFY)) {
    screensChanged();
  }
}

void X11Changes::propertyChanged(const xcb_property_notify_event_t& event) {
  const auto is = [&](X11Atom atom) { return event.atom == connection_.atom(atom); };
  if (is(X11Atom::netSupportingWmCheck) || (event.window == checkWindow_ && is(X11Atom::netWmName))) {
    windowManagerChanged();
    tell(spacesChanged);
  } else if (event.window != connection_.root()) {
    return;
  } else if (is(X11Atom::netCurrentDesktop)) {
    listeners_.operations.desktopsChanged();
    tell(activeSpaceChanged);
  } else if (is(X11Atom::netNumberOfDesktops)) {
    listeners_.operations.desktopsChanged();
    desktopsChanged();
  } else if (is(X11Atom::netDesktopNames)) {
    listeners_.desktopNames.namesChanged(event.sequence);
    tell(spacesChanged);
  }
}

void X11Changes::desktopsChanged() {
  listeners_.desktopNames.desktopsChanged();
  tell(spacesChanged);
}

void X11Changes::windowManagerChanged() {
  const auto cookie = connection_.requestProperty(connection_.root(), X11Atom::netSupportingWmCheck, XCB_ATOM_WINDOW);
  const auto named = parseCardinal(connection_.takeProperty(cookie)).value_or(XCB_WINDOW_NONE);
  if (named != XCB_WINDOW_NONE) {
    // Its properties too: a window manager may name the window before it has filled them in. Also when the number is
    // the same as before: a window manager that is started again is often given the ids of the one that died.
    selectEvents(connection_, named, XCB_EVENT_MASK_STRUCTURE_NOTIFY | XCB_EVENT_MASK_PROPERTY_CHANGE);
  }
  checkWindow_ = named;
  dynamic_ = desktops_.read().dynamic;
  listeners_.desktopNames.windowManagerChanged();
}

void X11Changes::tell(WindowServerEvent event) {
  if (event == activeSpaceChanged || dynamic_) {
    listeners_.dock.activeSpaceChanged(X11WindowServer::mainDisplay);
  }
  listeners_.windowServer.notify(event);
  if (event == activeSpaceChanged || dynamic_) {
    listeners_.workspaceNotifications.post(
        {NotificationName::NSWorkspaceActiveSpaceDidChangeNotification, std::nullopt});
  }
}

void X11Changes::screensChanged() {
  screensWork_ = queue_.after(screensBurst, [this] {
    listeners_.defaultNotifications.post(
        {NotificationName::NSApplicationDidChangeScreenParametersNotification, std::nullopt});
  });
}

}  // namespace tallowin
