#include "platform/x11/x11_glance.h"

namespace tallowin {

X11Glance::View X11Glance::look() {
  const auto stamp = moment_.now();
  const auto root = connection_.root();
  const auto activeCookie = connection_.requestProperty(root, X11Atom::netActiveWindow, XCB_ATOM_WINDOW);
  const auto pointerCookie = xcb_query_pointer(connection_.raw(), root);
  const auto sizeCookie = xcb_get_geometry(connection_.raw(), root);

  auto view = std::make_shared<X11View>();
  view->desktops = desktops_.read();
  view->activeWindow = parseCardinal(connection_.takeProperty(activeCookie)).value_or(XCB_WINDOW_NONE);
  if (const auto pointer = connection_.reply(xcb_query_pointer_reply, pointerCookie)) {
    view->pointer = {static_cast<double>(pointer->root_x), static_cast<double>(pointer->root_y)};
    view->held = pointer->mask;
    view->underPointer = pointer->child;
  }
  if (const auto size = connection_.reply(xcb_get_geometry_reply, sizeCookie)) {
    view->rootSize = {static_cast<double>(size->width), static_cast<double>(size->height)};
  }
  latest_ = view;
  madeAt_ = stamp;
  return view;
}

X11Glance::View X11Glance::present() {
  return latest_ != nullptr && moment_.lasts(madeAt_) ? latest_ : look();
}

}  // namespace tallowin
