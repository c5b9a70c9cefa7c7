#include "platform/x11/x11_desktop_reader.h"

namespace tallowin {

X11DesktopReader::CheckWindowCookies X11DesktopReader::requestCheckWindow(xcb_window_t window) {
  return {connection_.requestProperty(window, X11Atom::netSupportingWmCheck, XCB_ATOM_WINDOW),
          connection_.requestProperty(window, X11Atom::netWmName, connection_.atom(X11Atom::utf8String))};
}

void X11DesktopReader::takeCheckWindow(CheckWindowCookies cookies, xcb_window_t window,
                                       X11DesktopProperties& properties) {
  properties.checkWindow = window;
  properties.checkWindowCheck = connection_.takeProperty(cookies.check);
  properties.checkWindowName = connection_.takeProperty(cookies.name);
}

X11DesktopProperties X11DesktopReader::readProperties() {
  const auto root = connection_.root();
  const auto likely = likelyCheckWindow_;
  const auto count = connection_.requestProperty(root, X11Atom::netNumberOfDesktops, XCB_ATOM_CARDINAL);
  const auto current = connection_.requestProperty(root, X11Atom::netCurrentDesktop, XCB_ATOM_CARDINAL);
  const auto names = connection_.requestProperty(root, X11Atom::netDesktopNames, connection_.atom(X11Atom::utf8String));
  const auto record =
      connection_.requestProperty(root, X11Atom::tallowinDesktopNames, connection_.atom(X11Atom::utf8String));
  const auto check = connection_.requestProperty(root, X11Atom::netSupportingWmCheck, XCB_ATOM_WINDOW);
  const auto likelyCookies = requestCheckWindow(likely);

  X11DesktopProperties properties;
  properties.numberOfDesktops = connection_.takeProperty(count);
  properties.currentDesktop = connection_.takeProperty(current);
  properties.desktopNames = connection_.takeProperty(names);
  properties.desktopNamesRecord = connection_.takeProperty(record);
  properties.supportingWmCheck = connection_.takeProperty(check);
  takeCheckWindow(likelyCookies, likely, properties);
  if (const auto named = parseCardinal(properties.supportingWmCheck); named && *named != likely) {
    takeCheckWindow(requestCheckWindow(*named), *named, properties);
    likelyCheckWindow_ = *named;
  }
  return properties;
}

X11DesktopState X11DesktopReader::stateOf(const X11DesktopProperties& properties) {
  auto state = readX11DesktopState(properties);
  const auto count = state.spaces.size();
  if (state.dynamic || count == 0) {
    return state;
  }
  if (held_ && count == held_->count) {
    return held_->before;
  }
  if (held_ && count != held_->before.spaces.size()) {
    held_.reset();
  }
  places_.countSeen(count);
  state.spaces = places_.get().ids();
  return state;
}

}  // namespace tallowin
