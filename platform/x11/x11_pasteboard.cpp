#include "platform/x11/x11_pasteboard.h"

#include <array>
#include <cstring>

namespace tallowin {

namespace {

/// What a request that changes a property needs beside the data.
constexpr std::size_t requestOverhead = 64;

constexpr auto targets = std::to_array(
    {X11Atom::targets, X11Atom::timestamp, X11Atom::multiple, X11Atom::utf8String, X11Atom::plainTextInUTF8});

}  // namespace

X11Pasteboard::~X11Pasteboard() {
  if (window_ != XCB_WINDOW_NONE) {
    xcb_destroy_window(connection_.raw(), window_);
    connection_.flush();
  }
}

bool X11Pasteboard::setString(std::string_view text) {
  const auto most = std::size_t{xcb_get_maximum_request_length(connection_.raw())} * 4;
  if (text.size() + requestOverhead > most) {
    return false;
  }
  if (window_ == XCB_WINDOW_NONE) {
    window_ = xcb_generate_id(connection_.raw());
    xcb_create_window(connection_.raw(), XCB_COPY_FROM_PARENT, window_, connection_.root(), 0, 0, 1, 1, 0,
                      XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, 0, nullptr);
  }
  const auto clipboard = connection_.atom(X11Atom::clipboard);
  ownedSince_ = serverTime_.now();
  xcb_set_selection_owner(connection_.raw(), window_, clipboard, ownedSince_);
  const auto owner =
      connection_.reply(xcb_get_selection_owner_reply, xcb_get_selection_owner(connection_.raw(), clipboard));
  if (owner == nullptr || owner->owner != window_) {
    return false;
  }
  text_ = text;
  return true;
}

void X11Pasteboard::handle(const xcb_generic_event_t& event) {
  constexpr std::uint8_t sentByClient = 0x80;  // X11 protocol, Events
  const auto type = static_cast<std::uint8_t>(event.response_type & ~sentByClient);
  if (type == XCB_SELECTION_REQUEST) {
    const auto& request = reinterpret_cast<const xcb_selection_request_event_t&>(event);
    if (request.owner == window_) {
      answer(request);
    }
  } else if (type == XCB_SELECTION_CLEAR &&
             reinterpret_cast<const xcb_selection_clear_event_t&>(event).owner == window_) {
    text_.clear();
    text_.shrink_to_fit();
  }
}

void X11Pasteboard::answer(const xcb_selection_request_event_t& request) {
  xcb_selection_notify_event_t notify{};
  notify.response_type = XCB_SELECTION_NOTIFY;
  notify.time = request.time;
  notify.requestor = request.requestor;
  notify.selection = request.selection;
  notify.target = request.target;
  // Obsolete clients name no property; the target's name stands in for it (ICCCM).
  const auto property = request.property != XCB_ATOM_NONE ? request.property : request.target;
  const bool isOurs = request.selection == connection_.atom(X11Atom::clipboard);
  const bool isConverted = isOurs && convert(request.requestor, property, request.target);
  notify.property = isConverted ? property : xcb_atom_t{XCB_ATOM_NONE};
  std::array<char, 32> event{};  // as many bytes as SendEvent carries
  std::memcpy(event.data(), &notify, sizeof notify);
  xcb_send_event(connection_.raw(), 0, request.requestor, XCB_EVENT_MASK_NO_EVENT, event.data());
  connection_.flush();
}

bool X11Pasteboard::convert(xcb_window_t requestor, xcb_atom_t property, xcb_atom_t target) {
  if (target == connection_.atom(X11Atom::multiple)) {
    return convertMultiple(requestor, property);
  }
  if (target == connection_.atom(X11Atom::targets)) {
    std::vector<std::uint32_t> atoms;
    for (const auto each : targets) {
      atoms.push_back(connection_.atom(each));
    }
    put(requestor, property, XCB_ATOM_ATOM, atoms);
    return true;
  }
  if (target == connection_.atom(X11Atom::timestamp)) {
    put(requestor, property, XCB_ATOM_INTEGER, {ownedSince_});
    return true;
  }
  if (target == connection_.atom(X11Atom::utf8String) || target == connection_.atom(X11Atom::plainTextInUTF8)) {
    xcb_change_property(connection_.raw(), XCB_PROP_MODE_REPLACE, requestor, property, target, 8,
                        static_cast<std::uint32_t>(text_.size()), text_.data());
    return true;
  }
  return false;
}

/// The property holds pairs of a target and a property; a property whose target cannot be had becomes none.
bool X11Pasteboard::convertMultiple(xcb_window_t requestor, xcb_atom_t property) {
  constexpr std::uint32_t mostPairs = 64;
  const auto pairType = connection_.atom(X11Atom::atomPair);
  const auto reply = connection_.reply(
      xcb_get_property_reply, xcb_get_property(connection_.raw(), 0, requestor, property, pairType, 0, 2 * mostPairs));
  if (reply == nullptr || reply->type != pairType || reply->format != 32) {
    return false;
  }
  const auto* values = static_cast<const std::uint32_t*>(xcb_get_property_value(reply.get()));
  std::vector<std::uint32_t> pairs(values, values + std::size_t{reply->value_len} / 2 * 2);
  for (std::size_t i = 0; i + 1 < pairs.size(); i += 2) {
    const bool isNested = pairs[i] == connection_.atom(X11Atom::multiple);
    if (isNested || pairs[i + 1] == XCB_ATOM_NONE || !convert(requestor, pairs[i + 1], pairs[i])) {
      pairs[i + 1] = XCB_ATOM_NONE;
    }
  }
  put(requestor, property, pairType, pairs);
  return true;
}

void X11Pasteboard::put(xcb_window_t requestor, xcb_atom_t property, xcb_atom_t type,
                        const std::vector<std::uint32_t>& values) {
  xcb_change_property(connection_.raw(), XCB_PROP_MODE_REPLACE, requestor, property, type, 32,
                      static_cast<std::uint32_t>(values.size()), values.data());
}

}  // namespace tallowin
