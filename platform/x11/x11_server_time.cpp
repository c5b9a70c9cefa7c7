#include "platform/x11/x11_server_time.h"

#include <cerrno>
#include <chrono>
#include <poll.h>

namespace tallowin {

namespace {

constexpr auto timePatience = std::chrono::milliseconds(100);

}  // namespace

bool X11ServerTime::connect() {
  if (connection_ != nullptr && xcb_connection_has_error(connection_.get()) == 0) {
    return true;
  }
  connection_.reset(xcb_connect(nullptr, nullptr));
  const auto roots = xcb_setup_roots_iterator(xcb_get_setup(connection_.get()));
  if (xcb_connection_has_error(connection_.get()) != 0 || roots.rem == 0) {
    return false;
  }
  window_ = xcb_generate_id(connection_.get());
  const std::uint32_t values[] = {1, XCB_EVENT_MASK_PROPERTY_CHANGE};
  xcb_create_window(connection_.get(), XCB_COPY_FROM_PARENT, window_, roots.data->root, -1, -1, 1, 1, 0,
                    XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, XCB_CW_OVERRIDE_REDIRECT | XCB_CW_EVENT_MASK,
                    values);
  return true;
}

xcb_timestamp_t X11ServerTime::now() {
  if (!connect()) {
    return XCB_CURRENT_TIME;
  }
  // Nothing is appended; the server tells of it all the same.
  xcb_change_property(connection_.get(), XCB_PROP_MODE_APPEND, window_, XCB_ATOM_WM_NAME, XCB_ATOM_STRING, 8, 0,
                      nullptr);
  xcb_flush(connection_.get());
  const auto end = std::chrono::steady_clock::now() + timePatience;
  for (;;) {
    while (const XcbPtr<xcb_generic_event_t> event{xcb_poll_for_event(connection_.get())}) {
      if ((event->response_type & 0x7F) == XCB_PROPERTY_NOTIFY) {
        return reinterpret_cast<const xcb_property_notify_event_t&>(*event).time;
      }
    }
    const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(end - std::chrono::steady_clock::now());
    pollfd descriptor{xcb_get_file_descriptor(connection_.get()), POLLIN, 0};
    if (left.count() <= 0 || xcb_connection_has_error(connection_.get()) != 0) {
      return XCB_CURRENT_TIME;
    }
    const int ready = poll(&descriptor, 1, static_cast<int>(left.count()));
    if (ready == 0 || (ready < 0 && errno != EINTR)) {
      return XCB_CURRENT_TIME;
    }
  }
}

}  // namespace tallowin
