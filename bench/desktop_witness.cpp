#include "bench/desktop_witness.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <poll.h>

namespace tallowin::bench {

namespace {

struct Free {
  void operator()(void* memory) const { std::free(memory); }
};
using Event = std::unique_ptr<xcb_generic_event_t, Free>;

constexpr int withoutSentBit = 0x7F;

}  // namespace

DesktopWitness::DesktopWitness(const std::string& property, xcb_window_t window)
    : connection_(xcb_connect(nullptr, nullptr)) {
  if (xcb_connection_has_error(connection_) != 0) {
    return;
  }
  root_ = xcb_setup_roots_iterator(xcb_get_setup(connection_)).data->root;
  window_ = window == XCB_WINDOW_NONE ? root_ : window;
  property_ = atom(property);
  const std::uint32_t mask = XCB_EVENT_MASK_PROPERTY_CHANGE;
  xcb_change_window_attributes(connection_, window_, XCB_CW_EVENT_MASK, &mask);
}

DesktopWitness::~DesktopWitness() {
  xcb_disconnect(connection_);
}

xcb_atom_t DesktopWitness::atom(const std::string& name) const {
  const std::unique_ptr<xcb_intern_atom_reply_t, Free> atom(xcb_intern_atom_reply(
      connection_, xcb_intern_atom(connection_, 0, static_cast<std::uint16_t>(name.size()), name.data()), nullptr));
  return atom ? atom->atom : xcb_atom_t{XCB_ATOM_NONE};
}

std::optional<std::uint32_t> DesktopWitness::current() const {
  const std::unique_ptr<xcb_get_property_reply_t, Free> reply(xcb_get_property_reply(
      connection_, xcb_get_property(connection_, 0, window_, property_, XCB_ATOM_CARDINAL, 0, 1), nullptr));
  std::uint32_t value = 0;
  if (!reply || xcb_get_property_value_length(reply.get()) < static_cast<int>(sizeof value)) {
    return std::nullopt;
  }
  std::memcpy(&value, xcb_get_property_value(reply.get()), sizeof value);
  return value;
}

std::optional<DesktopWitness::Clock::time_point> DesktopWitness::waitFor(std::uint32_t index) const {
  constexpr int patience = 10'000;  // milliseconds
  pollfd server{xcb_get_file_descriptor(connection_), POLLIN, 0};
  do {
    while (const Event event{xcb_poll_for_event(connection_)}) {
      const auto now = Clock::now();
      const auto& change = reinterpret_cast<const xcb_property_notify_event_t&>(*event);
      if ((event->response_type & withoutSentBit) == XCB_PROPERTY_NOTIFY && change.atom == property_ &&
          current() == index) {
        return now;
      }
    }
  } while (xcb_connection_has_error(connection_) == 0 && ::poll(&server, 1, patience) > 0);
  return std::nullopt;
}

bool DesktopWitness::set(std::uint32_t index) const {
  if (current() == index) {
    return true;
  }
  ask(index);
  return waitFor(index).has_value();
}

void DesktopWitness::activate() const {
  constexpr std::uint32_t pager = 2;  // EWMH, source indication
  send(window_, atom("_NET_ACTIVE_WINDOW"), {pager});
}

void DesktopWitness::send(xcb_window_t window, xcb_atom_t type, const std::array<std::uint32_t, 5>& words) const {
  xcb_client_message_event_t message{};
  message.response_type = XCB_CLIENT_MESSAGE;
  message.format = 32;
  message.window = window;
  message.type = type;
  std::ranges::copy(words, message.data.data32);
  xcb_send_event(connection_, 0, root_, XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT,
                 reinterpret_cast<const char*>(&message));
  xcb_flush(connection_);
}

}  // namespace tallowin::bench
