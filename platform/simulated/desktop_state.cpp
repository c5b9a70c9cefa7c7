#include "platform/simulated/desktop_state.h"

#include <algorithm>
#include <cctype>

namespace tallowin {

namespace {

bool sameText(std::string_view one, std::string_view other) {
  return std::ranges::equal(
      one, other, {}, [](unsigned char c) { return std::tolower(c); }, [](unsigned char c) { return std::tolower(c); });
}

}  // namespace

SimulatedWindow* DesktopState::window(WindowNumber number) {
  const auto found = std::ranges::find(windows, number, &SimulatedWindow::number);
  return found == windows.end() ? nullptr : &*found;
}

SimulatedApplication* DesktopState::application(ProcessID pid) {
  const auto found = std::ranges::find(applications, std::optional(pid), &SimulatedApplication::pid);
  return found == applications.end() ? nullptr : &*found;
}

std::string DesktopState::applicationName(ProcessID pid) const {
  const auto found = std::ranges::find(applications, std::optional(pid), &SimulatedApplication::pid);
  return found == applications.end() ? "" : found->name;
}

bool DesktopState::isOnScreen(const SimulatedWindow& window) const {
  const auto owner = std::ranges::find(applications, std::optional(window.pid), &SimulatedApplication::pid);
  const bool hidden = owner != applications.end() && owner->isHidden;
  return !window.minimized && !hidden &&
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
  const auto found =
      std::ranges::find_if(displays, [&](const auto& display) { return display.bounds.contains(point); });
  return found == displays.end() ? nullptr : &*found;
}

const SimulatedDisplay* DesktopState::displayNamed(std::string_view identifier) const {
  if (identifier == "Main") {
    return displays.empty() ? nullptr : &displays.front();
  }
  const auto found =
      std::ranges::find_if(displays, [&](const auto& display) { return sameText(display.uuid, identifier); });
  return found == displays.end() ? nullptr : &*found;
}

}  // namespace tallowin
