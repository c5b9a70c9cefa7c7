#include "platform/x11/x11_connection.h"

#include <cerrno>
#include <chrono>
#include <cstring>
#include <poll.h>
#include <xcb/randr.h>
#include <xcb/res.h>
#include <xcb/xtest.h>

namespace tallowin {

namespace {

constexpr auto timePatience = std::chrono::milliseconds(100);
constexpr std::uint32_t longestProperty = longestPropertyBytes / 4;  // GetProperty counts in units of four bytes

const xcb_screen_t* findScreen(xcb_connection_t* connection, int number) {
  auto screens = xcb_setup_roots_iterator(xcb_get_setup(connection));
  for (; screens.rem > 0 && number > 0; --number) {
    xcb_screen_next(&screens);
  }
  return screens.rem > 0 ? screens.data : nullptr;
}

}  // namespace

std::expected<std::unique_ptr<X11Connection>, std::string> X11Connection::open() {
  const char* name = std::getenv("DISPLAY");
  if (name == nullptr || *name == '\0') {
    return std::unexpected("cannot reach an X server: DISPLAY is not set");
  }
  const auto failure = std::unexpected("cannot reach the X server \"" + std::string(name) + "\" that DISPLAY names");
  int screenNumber = 0;
  xcb_connection_t* connection = xcb_connect(nullptr, &screenNumber);
  const auto* screen = xcb_connection_has_error(connection) == 0 ? findScreen(connection, screenNumber) : nullptr;
  if (screen == nullptr) {
    xcb_disconnect(connection);
    return failure;
  }
  std::unique_ptr<X11Connection> opened(new X11Connection(connection, screen));
  if (!opened->alive()) {
    return failure;
  }
  return opened;
}

X11Connection::X11Connection(xcb_connection_t* connection, const xcb_screen_t* screen)
    : connection_(connection), screen_(screen) {
  xcb_prefetch_extension_data(connection_, &xcb_randr_id);
  xcb_prefetch_extension_data(connection_, &xcb_test_id);
  xcb_prefetch_extension_data(connection_, &xcb_res_id);
  std::array<xcb_intern_atom_cookie_t, x11AtomNames.size()> cookies{};
  for (std::size_t i = 0; i < cookies.size(); ++i) {
    const auto name = x11AtomNames.at(i);
    cookies.at(i) = xcb_intern_atom(connection_, 0, static_cast<std::uint16_t>(name.size()), name.data());
  }
  for (std::size_t i = 0; i < cookies.size(); ++i) {
    const auto answer = reply(xcb_intern_atom_reply, cookies.at(i));
    atoms_.at(i) = answer ? answer->atom : xcb_atom_t{XCB_ATOM_NONE};
  }
}

X11Connection::~X11Connection() {
  // A round trip, so that the server has done what was asked: when a connection closes while events are unread, the
  // kernel drops what is still on its way to the server.
  reply(xcb_get_input_focus_reply, xcb_get_input_focus(connection_));
  xcb_disconnect(connection_);
}

bool X11Connection::hasExtension(xcb_extension_t& extension) const {
  const auto* data = xcb_get_extension_data(connection_, &extension);
  return data != nullptr && data->present != 0;
}

std::optional<int> X11Connection::firstEvent(xcb_extension_t& extension) const {
  const auto* data = xcb_get_extension_data(connection_, &extension);
  return data != nullptr && data->present != 0 ? std::optional<int>(data->first_event) : std::nullopt;
}

bool X11Connection::succeeded(xcb_void_cookie_t cookie) {
  const XcbPtr<xcb_generic_error_t> error(xcb_request_check(connection_, cookie));
  readObserver_();
  return error == nullptr && alive();
}

void X11Connection::flush() {
  endMoment();
  xcb_flush(connection_);
  readObserver_();
}

xcb_get_property_cookie_t X11Connection::requestProperty(xcb_window_t window, X11Atom property, xcb_atom_t type) {
  return xcb_get_property(connection_, 0, window, atom(property), type, 0, longestProperty);
}

X11Property X11Connection::takeProperty(xcb_get_property_cookie_t cookie) {
  const auto answer = reply(xcb_get_property_reply, cookie);
  if (!answer) {
    return {};
  }
  const auto length = static_cast<std::size_t>(xcb_get_property_value_length(answer.get()));
  if (length == 0) {
    return {};
  }
  return {answer->format, std::string(static_cast<const char*>(xcb_get_property_value(answer.get())), length)};
}

XcbPtr<xcb_generic_event_t> X11Connection::nextEvent() {
  if (peekedAt_.empty()) {
    return XcbPtr<xcb_generic_event_t>(xcb_poll_for_event(connection_));
  }
  auto next = std::move(peekedAt_.front());
  peekedAt_.pop_front();
  return next;
}

void X11Connection::peekAtEvents(const std::function<void(const xcb_generic_event_t&)>& look) {
  while (auto event = XcbPtr<xcb_generic_event_t>(xcb_poll_for_queued_event(connection_))) {
    peekedAt_.push_back(std::move(event));
  }
  for (const auto& event : peekedAt_) {
    look(*event);
  }
}

void X11Connection::selectEvents(xcb_window_t window, std::uint32_t mask) {
  if (window == root()) {
    mask = rootEvents_ |= mask;
  }
  xcb_change_window_attributes(connection_, window, XCB_CW_EVENT_MASK, &mask);
}

void X11Connection::writeToWindowManager(xcb_window_t window, X11Atom message,
                                         const std::array<std::uint32_t, 5>& data) {
  xcb_client_message_event_t event{};
  event.response_type = XCB_CLIENT_MESSAGE;
  event.format = 32;
  event.window = window;
  event.type = atom(message);
  std::memcpy(event.data.data32, data.data(), sizeof event.data.data32);
  // SendEvent always carries 32 bytes, which is just the size of this event.
  static_assert(sizeof event == 32);
  xcb_send_event(connection_, 0, root(), XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT,
                 reinterpret_cast<const char*>(&event));
}

void X11Connection::sendToWindowManager(xcb_window_t window, X11Atom message,
                                        const std::array<std::uint32_t, 5>& data) {
  writeToWindowManager(window, message, data);
  flush();
}

void X11Connection::writeMoveToDesktop(xcb_window_t window, std::uint32_t desktop) {
  writeToWindowManager(window, X11Atom::netWmDesktop, {desktop, pagerSource, 0, 0, 0});
}

bool X11ServerTime::connect() {
  if (connection_ != nullptr && connection_->alive()) {
    return true;
  }
  connection_ = X11Connection::open().value_or(nullptr);
  if (connection_ == nullptr) {
    return false;
  }
  window_ = xcb_generate_id(connection_->raw());
  const std::uint32_t values[] = {1, XCB_EVENT_MASK_PROPERTY_CHANGE};
  xcb_create_window(connection_->raw(), XCB_COPY_FROM_PARENT, window_, connection_->root(), -1, -1, 1, 1, 0,
                    XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, XCB_CW_OVERRIDE_REDIRECT | XCB_CW_EVENT_MASK,
                    values);
  return true;
}

xcb_timestamp_t X11ServerTime::now() {
  if (!connect()) {
    return XCB_CURRENT_TIME;
  }
  // Nothing is appended; the server tells of it all the same.
  xcb_change_property(connection_->raw(), XCB_PROP_MODE_APPEND, window_, XCB_ATOM_WM_NAME, XCB_ATOM_STRING, 8, 0,
                      nullptr);
  xcb_flush(connection_->raw());
  const auto end = std::chrono::steady_clock::now() + timePatience;
  for (;;) {
    while (const XcbPtr<xcb_generic_event_t> event{xcb_poll_for_event(connection_->raw())}) {
      if (x11EventType(*event) == XCB_PROPERTY_NOTIFY) {
        return x11EventAs<xcb_property_notify_event_t>(*event).time;
      }
    }
    const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(end - std::chrono::steady_clock::now());
    pollfd descriptor{xcb_get_file_descriptor(connection_->raw()), POLLIN, 0};
    if (left.count() <= 0 || xcb_connection_has_error(connection_->raw()) != 0) {
      return XCB_CURRENT_TIME;
    }
    const int ready = poll(&descriptor, 1, static_cast<int>(left.count()));
    if (ready == 0 || (ready < 0 && errno != EINTR)) {
      return XCB_CURRENT_TIME;
    }
  }
}

X11EventPump::X11EventPump(X11Connection& connection, MainQueue& queue, Descriptors& descriptors, Handlers handlers)
    : connection_(connection), queue_(queue), handlers_(std::move(handlers)) {
  watch_ = descriptors.watchReadable(xcb_get_file_descriptor(connection_.raw()), [this] { drain(); });
  connection_.setReadObserver([this] { drainSoon(); });
  connection_.flush();
}

X11EventPump::~X11EventPump() {
  connection_.setReadObserver([] {});
}

void X11EventPump::drainSoon() {
  if (std::exchange(isDraining_, true)) {
    return;
  }
  queue_.async(lifetime_.bound([this] {
    isDraining_ = false;
    drain();
  }));
}

void X11EventPump::drain() {
  connection_.endMoment();
  bool any = false;
  while (const auto event = connection_.nextEvent()) {
    any = true;
    handlers_.event(*event);
  }
  if (any) {
    handlers_.allHandled();
  }
  if (!connection_.alive()) {
    watch_.cancel();
    if (auto tell = std::exchange(handlers_.connectionLost, nullptr)) {
      queue_.async(std::move(tell));
    }
  }
}

}  // namespace tallowin
