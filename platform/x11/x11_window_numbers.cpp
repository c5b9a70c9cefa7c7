#include "platform/x11/x11_window_numbers.h"

#include <algorithm>
#include <set>

namespace tallowin {

namespace {

constexpr std::uint8_t badWindow = 3;  // X11 protocol, error codes

/// The window that an event says has ended.
std::optional<xcb_window_t> endedWindow(const xcb_generic_event_t& event) {
  if ((event.response_type & 0x7F) == XCB_DESTROY_NOTIFY) {
    return reinterpret_cast<const xcb_destroy_notify_event_t&>(event).window;
  }
  if (event.response_type == 0) {
    const auto& error = reinterpret_cast<const xcb_generic_error_t&>(event);
    if (error.error_code == badWindow && error.major_code == XCB_CHANGE_WINDOW_ATTRIBUTES) {
      return error.resource_id;  // it went before it could be watched
    }
  }
  return std::nullopt;
}

/// Sequence numbers wrap around.
bool isBefore(std::uint32_t sequence, std::uint32_t other) {
  return static_cast<std::int32_t>(sequence - other) < 0;
}

}  // namespace

void X11WindowNumbers::noteManaged(const std::vector<xcb_window_t>& windows) {
  for (const auto window : windows) {
    if (numbered_.contains(window)) {
      continue;
    }
    auto number = window;
    if (mayHaveBelongedToAnother(window)) {
      number = next_++;
      windows_[number] = window;
    }
    numbered_[window] = {number, watch_(window)};
  }
}

std::vector<xcb_window_t> X11WindowNumbers::missingFrom(const std::vector<xcb_window_t>& windows) const {
  const std::set present(windows.begin(), windows.end());
  std::vector<xcb_window_t> missing;
  for (const auto& [window, numbered] : numbered_) {
    if (!present.contains(window)) {
      missing.push_back(window);
    }
  }
  return missing;
}

void X11WindowNumbers::noteGone(xcb_window_t window) {
  end(window);
}

bool X11WindowNumbers::handle(const xcb_generic_event_t& event) {
  const auto window = endedWindow(event);
  if (!window) {
    return false;
  }
  const auto found = numbered_.find(*window);
  if (found == numbered_.end() || isBefore(event.full_sequence, found->second.watchedSince)) {
    return false;
  }
  end(*window);
  return event.response_type != 0;  // one that could not be watched could not be read either
}

std::optional<WindowNumber> X11WindowNumbers::number(xcb_window_t window) const {
  const auto found = numbered_.find(window);
  return found == numbered_.end() ? std::nullopt : std::optional(found->second.number);
}

std::optional<xcb_window_t> X11WindowNumbers::window(WindowNumber number) const {
  if (number >= firstThatIsNoID) {
    const auto found = windows_.find(number);
    return found == windows_.end() ? std::nullopt : std::optional(found->second);
  }
  const auto found = numbered_.find(number);
  const bool isValid = found == numbered_.end() ? !mayHaveBelongedToAnother(number) : found->second.number == number;
  return isValid ? std::optional(number) : std::nullopt;
}

bool X11WindowNumbers::mayHaveBelongedToAnother(xcb_window_t window) const {
  const auto highest = highestGone_.find(window & ~resourceMask_);
  return highest != highestGone_.end() && window <= highest->second;
}

void X11WindowNumbers::end(xcb_window_t window) {
  const auto node = numbered_.extract(window);
  if (!node.empty()) {
    windows_.erase(node.mapped().number);
    auto& highest = highestGone_[window & ~resourceMask_];
    highest = std::max(highest, window);
  }
}

}  // namespace tallowin
