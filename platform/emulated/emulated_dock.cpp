#include "platform/emulated/emulated_dock.h"

#include <algorithm>

namespace tallowin {

namespace {

constexpr auto emulatedDockCategory = "EmulatedDock";

}  // namespace

EmulatedDock::EmulatedDock(DesktopOperations& desktops, const SymbolicHotKeys& hotKeys, MainQueue& queue,
                           const Clock& clock, Log& log, DockBehaviour behaviour)
    : desktops_(desktops),
      hotKeys_(hotKeys),
      queue_(queue),
      clock_(clock),
      log_(log),
      behaviour_(std::move(behaviour)) {}

bool EmulatedDock::handle(const EmulatedEvent& event) {
  if (isDockControl(event)) {
    swipe(event);
    return true;
  }
  return pressHotKey(event);
}

std::string EmulatedDock::meaning(const EmulatedEvent& event) const {
  if (isDockControl(event)) {
    const auto read = readDockSwipe(event);
    if (!read) {
      return "a malformed gesture";
    }
    const auto* const phase = read->phase == DockSwipe::Phase::began   ? " begins"
                              : read->phase == DockSwipe::Phase::ended ? " ends"
                                                                       : " goes on";
    return (direction(*read) > 0 ? "a swipe to the right" : "a swipe to the left") + std::string(phase);
  }
  const bool isKey = event.type() == EmulatedEvent::keyDown || event.type() == EmulatedEvent::keyUp;
  const auto keyCode = static_cast<VirtualKeyCode>(event.integer(EmulatedEvent::keyCodeField));
  const auto hotKey = isKey ? hotKeys_.match(keyCode, event.flags) : std::nullopt;
  if (!hotKey) {
    return "";
  }
  return *hotKey == symbolic_hot_key::moveLeft ? "one Space to the left"
         : *hotKey == symbolic_hot_key::moveRight
             ? "one Space to the right"
             : "desktop " + std::to_string(*hotKey - symbolic_hot_key::firstDesktop + 1);
}

int EmulatedDock::direction(const DockSwipe& swipe) const {
  const bool reversed = swipe.augmented && !behaviour_.naturalScrolling();
  return reversed ? -swipe.direction : swipe.direction;
}

void EmulatedDock::swipe(const EmulatedEvent& event) {
  const auto read = readDockSwipe(event);
  if (!read) {
    log_.error(emulatedDockCategory, "ignored a malformed gesture: " + read.error());
    return;
  }
  if (behaviour_.requiresAugmentedSwipes && !read->augmented) {
    log_.error(emulatedDockCategory, "ignored a gesture without a device report");
    return;
  }
  if (read->phase == DockSwipe::Phase::began) {
    swipeDirection_ = read->direction;
    return;
  }
  if (!swipeDirection_ || *swipeDirection_ != read->direction) {
    log_.error(emulatedDockCategory, "ignored a malformed gesture: it did not begin");
    swipeDirection_.reset();
    return;
  }
  if (read->phase == DockSwipe::Phase::ended) {
    swipeDirection_.reset();
    step(direction(*read), SwitchCause::gesture);
  }
}

bool EmulatedDock::pressHotKey(const EmulatedEvent& event) {
  const auto keyCode = static_cast<VirtualKeyCode>(event.integer(EmulatedEvent::keyCodeField));
  if (event.type() == EmulatedEvent::keyUp) {
    return heldKeys_.erase(keyCode) > 0;
  }
  if (event.type() != EmulatedEvent::keyDown) {
    return false;
  }
  const auto hotKey = hotKeys_.match(keyCode, event.flags);
  if (!hotKey) {
    return false;
  }
  heldKeys_.insert(keyCode);
  if (*hotKey == symbolic_hot_key::moveLeft || *hotKey == symbolic_hot_key::moveRight) {
    step(*hotKey == symbolic_hot_key::moveLeft ? -1 : 1, SwitchCause::hotKey);
  } else {
    switchToDesktop(static_cast<std::size_t>(*hotKey - symbolic_hot_key::firstDesktop) + 1);
  }
  return true;
}

void EmulatedDock::activeSpaceChanged(const std::string& display) {
  if (const auto found = journeys_.find(display); found != journeys_.end()) {
    found->second.heading.reset();
    found->second.givingUp.cancel();
  }
}

void EmulatedDock::step(int steps, SwitchCause cause) {
  const auto display = desktops_.displayUnderPointer();
  if (!display) {
    return;
  }
  auto& journey = journeys_[*display];
  if (journey.steps == 0 && behaviour_.lastReported) {
    journey.base = behaviour_.lastReported(*display);
  }
  journey.steps += steps;
  journey.cause = cause;
  journey.work = queue_.after(Duration::zero(), [this, display = *display] { perform(display); });
}

/// The Space that steps count from: the one that the display is heading for, else the active one.
std::optional<ManagedSpaceID> EmulatedDock::departure(Journey& journey, const DesktopRow& row) const {
  if (journey.heading == row.active || !isUnderWay(journey)) {
    journey.heading.reset();
  }
  return journey.heading ? journey.heading : row.active;
}

bool EmulatedDock::isUnderWay(const Journey& journey) const {
  const Duration since(clock_.machAbsoluteTime() - journey.headingSince);  // a tick is a nanosecond
  return journey.heading && since <= behaviour_.patience;
}

std::optional<ManagedSpaceID> EmulatedDock::heading(const std::string& display, std::optional<ManagedSpaceID> active) {
  const auto found = journeys_.find(display);
  if (found == journeys_.end()) {
    return std::nullopt;
  }
  auto& journey = found->second;
  if (journey.steps != 0) {
    journey.work.cancel();
    perform(display);
  }
  // When something else than before is active the switch has arrived, or somebody else was faster.
  return isUnderWay(journey) && active == journey.origin ? journey.heading : std::nullopt;
}

void EmulatedDock::perform(const std::string& display) {
  auto& journey = journeys_[display];
  const int steps = std::exchange(journey.steps, 0);
  if (behaviour_.screenLocked()) {
    return;
  }
  const auto rows = desktops_.rows();
  const auto row = std::ranges::find(rows, display, &DesktopRow::display);
  if (row == rows.end()) {
    return;
  }
  const auto base = std::exchange(journey.base, std::nullopt);
  const auto from = base ? base : departure(journey, *row);
  const auto at = std::ranges::find_if(row->spaces, [&](const DockSpace& space) { return space.id == from; });
  if (at == row->spaces.end()) {
    return;
  }
  // Past an end the Dock stays on the last Space.
  const auto last = static_cast<std::ptrdiff_t>(row->spaces.size()) - 1;
  const auto target = std::clamp<std::ptrdiff_t>(at - row->spaces.begin() + steps, 0, last);
  if (target != at - row->spaces.begin()) {
    head(journey, *row, row->spaces[static_cast<std::size_t>(target)].id, journey.cause);
  }
}

void EmulatedDock::switchToDesktop(std::size_t number) {
  if (behaviour_.screenLocked()) {
    return;
  }
  std::size_t seen = 0;
  for (const auto& row : desktops_.rows()) {
    for (const auto& space : row.spaces) {
      if (!space.ordinary || ++seen != number) {
        continue;
      }
      auto& journey = journeys_[row.display];
      journey.steps = 0;
      journey.work.cancel();
      if (departure(journey, row) != space.id) {
        head(journey, row, space.id, SwitchCause::hotKey);
      }
      return;
    }
  }
}

void EmulatedDock::head(Journey& journey, const DesktopRow& row, ManagedSpaceID space, SwitchCause cause) {
  journey.heading = space;
  journey.headingSince = clock_.machAbsoluteTime();
  journey.origin = row.active;
  if (behaviour_.givenUp) {
    journey.givingUp = queue_.after(behaviour_.patience, [this, &journey] {
      journey.heading.reset();
      behaviour_.givenUp();
    });
  }
  desktops_.switchTo(space, cause);
}

}  // namespace tallowin
