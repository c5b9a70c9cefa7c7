#include "platform/simulated/simulated_spaces.h"

#include <algorithm>

namespace tallowin {

std::optional<std::string> SimulatedSpaces::displayUnderPointer() {
  const auto* const pointed = state_.displayAt(state_.pointer);
  std::optional<std::string> shared;
  for (const auto& [display, spaces, active] : rows()) {
    // "Main" is the main display, or all of them where they share their Spaces.
    if (display == "Main") {
      shared = display;
    } else if (pointed != nullptr && state_.displayNamed(display) == pointed) {
      return display;
    }
  }
  return pointed != nullptr ? shared : std::nullopt;
}

void SimulatedSpaces::switchTo(ManagedSpaceID space, SwitchCause cause) {
  if (const auto display = state_.spaces.displayOf(space)) {
    underWay_[*display] =
        queue_.after(switchTime_, [this, display = *display, space, cause] { arrive(display, space, cause); });
  }
}

bool SimulatedSpaces::switchNow(ManagedSpaceID space) {
  const auto display = state_.spaces.displayOf(space);
  if (!display) {
    return false;
  }
  const auto before = state_.spaces.activeOn(*display);
  state_.spaces.activate(space);
  if (before != space) {
    announceActive(*display, space);
  }
  return true;
}

void SimulatedSpaces::announceActive(const std::string& display, ManagedSpaceID space) {
  journal_.record("activeSpace", {{"display", display}, {"space", space}});
  onArrival(display, space);
  onServerEvent(activeSpaceEvent);
  workspaceNotifications_.post({NotificationName::NSWorkspaceActiveSpaceDidChangeNotification, std::nullopt});
}

void SimulatedSpaces::arrive(const std::string& display, ManagedSpaceID space, SwitchCause cause) {
  const auto before = state_.spaces.activeOn(display);
  switchNow(space);
  if (cause != SwitchCause::gesture || bounces_ == 0 || !before || before == space) {
    return;
  }
  --bounces_;
  underWay_[display] = queue_.after(bounceAfter_, [this, display, space, before = *before] {
    if (state_.spaces.activeOn(display) == space) {
      switchNow(before);
    }
  });
}

void SimulatedSpaces::bounceNext(int count, Duration after) {
  bounces_ = count;
  bounceAfter_ = after;
}

bool SimulatedSpaces::addDesktop(const std::string& display) {
  const auto added = state_.spaces.addDesktop(display);
  if (!added) {
    return false;
  }
  journal_.record("spaceAdded", {{"display", display}, {"space", *added}});
  announceList();
  return true;
}

bool SimulatedSpaces::removeDesktop(ManagedSpaceID space) {
  const auto display = state_.spaces.displayOf(space);
  const bool wasActive = state_.spaces.isActive(space);
  const auto heir = state_.spaces.remove(space);
  if (!heir) {
    return false;
  }
  for (auto& window : state_.windows) {
    std::ranges::replace(window.spaces, space, *heir);
  }
  journal_.record("spaceRemoved", {{"display", *display}, {"space", space}});
  if (wasActive) {
    onArrival(*display, *heir);
    onServerEvent(activeSpaceEvent);
    workspaceNotifications_.post({NotificationName::NSWorkspaceActiveSpaceDidChangeNotification, std::nullopt});
  }
  announceList();
  return true;
}

void SimulatedSpaces::announceList() {
  onServerEvent(listEvent);
  onListChanged();
}

void SimulatedSpaces::replaceList(PropertyList list) {
  state_.spaces = RawSpaces(std::move(list));
  announceList();
}

void SimulatedSpaces::connectDisplay(const SimulatedDisplay& display) {
  if (std::ranges::find(state_.displays, display.id, &SimulatedDisplay::id) != state_.displays.end()) {
    return;
  }
  const auto before = rows();
  state_.displays.push_back(display);
  state_.spaces.addDisplay(display.uuid);
  announceList();
  // It may have taken its active Space back from another display.
  for (const auto& row : before) {
    const auto active = state_.spaces.activeOn(row.display);
    if (active && active != row.active) {
      announceActive(row.display, *active);
    }
  }
}

bool SimulatedSpaces::disconnectDisplay(DisplayID display) {
  const auto found = std::ranges::find(state_.displays, display, &SimulatedDisplay::id);
  if (found == state_.displays.end()) {
    return false;
  }
  // The list may write the UUID in another case.
  for (const auto& row : rows()) {
    if (row.display != "Main" && state_.displayNamed(row.display) == &*found) {
      state_.spaces.removeDisplay(row.display);
      if (state_.menuBarDisplay == row.display) {
        const auto left = rows();
        state_.menuBarDisplay = left.empty() ? std::nullopt : std::optional(left.front().display);
      }
    }
  }
  state_.displays.erase(found);
  announceList();
  return true;
}

}  // namespace tallowin
