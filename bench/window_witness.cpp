#include "bench/window_witness.h"

#include <array>
#include <cstdlib>

namespace tallowin::bench {

WindowWitness::WindowWitness() : connection_(xcb_connect(nullptr, nullptr)) {
  if (!connected()) {
    return;
  }
  root_ = xcb_setup_roots_iterator(xcb_get_setup(connection_)).data->root;
  clientList_ = atom("_NET_CLIENT_LIST");
  desktop_ = atom("_NET_WM_DESKTOP");
  frameExtents_ = atom("_NET_FRAME_EXTENTS");
}

WindowWitness::~WindowWitness() {
  xcb_disconnect(connection_);
}

xcb_atom_t WindowWitness::atom(const std::string& name) const {
  const Reply<xcb_intern_atom_reply_t> reply(xcb_intern_atom_reply(
      connection_, xcb_intern_atom(connection_, 0, static_cast<std::uint16_t>(name.size()), name.data()), nullptr));
  return reply ? reply->atom : xcb_atom_t{XCB_ATOM_NONE};
}

xcb_get_property_cookie_t WindowWitness::ask(xcb_window_t window, xcb_atom_t property) const {
  constexpr std::uint32_t longest = 65536;
  return xcb_get_property(connection_, 0, window, property, XCB_ATOM_ANY, 0, longest);
}

std::vector<std::uint32_t> WindowWitness::take(xcb_get_property_cookie_t cookie) const {
  const Reply<xcb_get_property_reply_t> reply(xcb_get_property_reply(connection_, cookie, nullptr));
  if (!reply || reply->format != 32) {
    return {};
  }
  const auto* const values = static_cast<const std::uint32_t*>(xcb_get_property_value(reply.get()));
  return {values, values + reply->value_len};
}

void WindowWitness::open(int number) const {
  const auto window = xcb_generate_id(connection_);
  xcb_create_window(connection_, XCB_COPY_FROM_PARENT, window, root_, static_cast<std::int16_t>(number % 600),
                    static_cast<std::int16_t>(number % 400), 200, 150, 0, XCB_WINDOW_CLASS_INPUT_OUTPUT,
                    XCB_COPY_FROM_PARENT, 0, nullptr);
  const auto setText = [&](xcb_atom_t property, const std::string& text) {
    xcb_change_property(connection_, XCB_PROP_MODE_REPLACE, window, property, XCB_ATOM_STRING, 8,
                        static_cast<std::uint32_t>(text.size()), text.data());
  };
  setText(XCB_ATOM_WM_CLASS, std::string("bench\0Bench\0", 12));
  setText(XCB_ATOM_WM_NAME, "Window " + std::to_string(number));
  xcb_map_window(connection_, window);
  xcb_flush(connection_);
}

std::vector<xcb_window_t> WindowWitness::windows() const {
  return take(ask(root_, clientList_));
}

std::vector<Place> WindowWitness::places(const std::vector<xcb_window_t>& windows) const {
  struct Question {
    xcb_translate_coordinates_cookie_t corner;
    xcb_get_property_cookie_t desktop;
  };
  std::vector<Question> questions;
  questions.reserve(windows.size());
  for (const auto window : windows) {
    questions.push_back({xcb_translate_coordinates(connection_, window, root_, 0, 0), ask(window, desktop_)});
  }
  std::vector<Place> places;
  for (const auto& question : questions) {
    const Reply<xcb_translate_coordinates_reply_t> corner(
        xcb_translate_coordinates_reply(connection_, question.corner, nullptr));
    const auto desktop = take(question.desktop);
    places.push_back({corner ? corner->dst_x : 0, corner ? corner->dst_y : 0, desktop.empty() ? 0 : desktop.front()});
  }
  return places;
}

std::pair<int, int> WindowWitness::frame(xcb_window_t window) const {
  const auto extents = take(ask(window, frameExtents_));  // left, right, top, bottom
  return extents.size() < 4 ? std::pair(0, 0) : std::pair(static_cast<int>(extents[0]), static_cast<int>(extents[2]));
}

void WindowWitness::move(xcb_window_t window, const Place& place) const {
  const auto [left, top] = frame(window);
  const std::array<std::uint32_t, 2> corner = {static_cast<std::uint32_t>(place.x - left),
                                               static_cast<std::uint32_t>(place.y - top)};
  xcb_configure_window(connection_, window, XCB_CONFIG_WINDOW_X | XCB_CONFIG_WINDOW_Y, corner.data());
  xcb_client_message_event_t message{};
  message.response_type = XCB_CLIENT_MESSAGE;
  message.format = 32;
  message.window = window;
  message.type = desktop_;
  message.data.data32[0] = place.desktop;
  xcb_send_event(connection_, 0, root_, XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT,
                 reinterpret_cast<const char*>(&message));
  xcb_flush(connection_);
}

}  // namespace tallowin::bench
