#include "platform/simulated/desktop_state.h"

#include <algorithm>

#include "base/unicode.h"
#include "platform/events.h"

namespace tallowin {

namespace {

/// The element whose member has this value, or null.
template <typename Elements, typename Member, typename Value>
auto* elementWith(Elements& elements, Member member, const Value& value) {
  const auto found = std::ranges::find(elements, value, member);
  return found == elements.end() ? nullptr : &*found;
}

}  // namespace

SymbolicHotKeys freshSymbolicHotKeys() {
  // HIToolbox/Events.h.
  constexpr VirtualKeyCode leftArrow = 123;
  constexpr VirtualKeyCode rightArrow = 124;
  constexpr VirtualKeyCode digits[] = {18, 19, 20, 21, 23, 22, 26, 28, 25, 29};  // 1 to 9, then 0
  // Arrow keys carry these beside the modifiers (CGEventTypes.h: numeric pad and secondary Fn).
  constexpr std::uint64_t arrowFlags = CGEventFlag::control | 0xA00000;
  SymbolicHotKeys hotKeys;
  hotKeys[symbolic_hot_key::moveLeft] = {SymbolicHotKeyBinding{leftArrow, arrowFlags}, true};
  hotKeys[symbolic_hot_key::moveRight] = {SymbolicHotKeyBinding{rightArrow, arrowFlags}, true};
  for (int desktop = 0; desktop < symbolic_hot_key::desktops; ++desktop) {
    const std::uint64_t option = desktop < std::ssize(digits) ? 0 : CGEventFlag::alternate;
    hotKeys[symbolic_hot_key::firstDesktop + desktop] = {
        SymbolicHotKeyBinding{digits[desktop % std::ssize(digits)], CGEventFlag::control | option}, true};
  }
  return hotKeys;
}

std::optional<int> pressedHotKey(const SymbolicHotKeys& hotKeys, VirtualKeyCode keyCode, std::uint64_t flags) {
  const auto found = std::ranges::find_if(hotKeys, [&](const auto& each) {
    const auto& [binding, enabled] = each.second;
    return enabled && binding && binding->keyCode == keyCode &&
           (binding->modifierFlags & CGEventFlag::modifiers) == (flags & CGEventFlag::modifiers);
  });
  return found != hotKeys.end() ? std::optional(found->first) : std::nullopt;
}

SimulatedWindow* DesktopState::window(WindowNumber number) {
  return elementWith(windows, &SimulatedWindow::number, number);
}

SimulatedApplication* DesktopState::application(ProcessID pid) {
  return elementWith(applications, &SimulatedApplication::pid, std::optional(pid));
}

const SimulatedDisplay* DesktopState::display(DisplayID id) const {
  return elementWith(displays, &SimulatedDisplay::id, id);
}

std::string DesktopState::applicationName(ProcessID pid) const {
  const auto* const found = elementWith(applications, &SimulatedApplication::pid, std::optional(pid));
  return found != nullptr ? found->name : "";
}

bool DesktopState::isOnScreen(const SimulatedWindow& window) const {
  const auto* const owner = elementWith(applications, &SimulatedApplication::pid, std::optional(window.pid));
  return !window.minimized && (owner == nullptr || !owner->isHidden) &&
         std::ranges::any_of(window.spaces, [&](ManagedSpaceID space) { return spaces.isActive(space); });
}

bool DesktopState::raise(WindowNumber number) {
  const auto window = std::ranges::find(windows, number, &SimulatedWindow::number);
  if (window == windows.end()) {
    return false;
  }
  const auto* const owner = application(window->pid);
  const bool isActive = owner != nullptr && owner->isActive;
  const auto first = isActive ? windows.begin() : std::ranges::find(windows, window->pid, &SimulatedWindow::pid);
  std::rotate(first, window, std::next(window));
  return true;
}

bool DesktopState::close(WindowNumber number) {
  const auto* const closing = window(number);
  const auto* const owner = closing != nullptr ? application(closing->pid) : nullptr;
  if (owner != nullptr && !owner->refusesClose) {
    std::erase_if(windows, [number](const SimulatedWindow& candidate) { return candidate.number == number; });
  }
  return owner != nullptr;
}

std::vector<ManagedSpaceID> DesktopState::activeSpacesAt(CGPoint point) const {
  const auto* const display = displayAt(point);
  std::optional<ManagedSpaceID> first;
  for (const auto& row : spaces.displays()) {
    if (row.current && display != nullptr && displayNamed(row.id) == display) {
      return {*row.current};
    }
    first = first ? first : row.current;
  }
  return first ? std::vector{*first} : std::vector<ManagedSpaceID>();
}

const SimulatedDisplay* DesktopState::displayAt(CGPoint point) const {
  const auto contains = [&](const SimulatedDisplay& display) { return display.bounds.contains(point); };
  const auto found = std::ranges::find_if(displays, contains);
  return found == displays.end() ? nullptr : &*found;
}

const SimulatedDisplay* DesktopState::displayNamed(std::string_view identifier) const {
  if (identifier == "Main") {
    return displays.empty() ? nullptr : &displays.front();
  }
  const auto isNamed = [&](const SimulatedDisplay& display) { return equalIgnoringCase(display.uuid, identifier); };
  const auto found = std::ranges::find_if(displays, isNamed);
  return found == displays.end() ? nullptr : &*found;
}

}  // namespace tallowin
