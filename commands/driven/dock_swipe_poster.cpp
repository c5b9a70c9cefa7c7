#include "commands/driven/dock_swipe_poster.h"

#include <cmath>
#include <cstdlib>
#include <limits>

#include "base/preferences.h"

namespace tallowin {

namespace {

// Undocumented fields of a Dock-control event.
constexpr CGEventField eventTypeField = 55;
constexpr CGEventField gestureField = 110;
constexpr CGEventField motionField = 123;
constexpr CGEventField progressField = 124;
constexpr CGEventField positionXField = 125;
constexpr CGEventField positionYField = 126;
constexpr CGEventField velocityXField = 129;
constexpr CGEventField velocityYField = 130;
constexpr CGEventField phaseField = 132;
constexpr CGEventField otherPhaseField = 134;
constexpr CGEventField swipeFlavorField = 138;
constexpr CGEventField machTimeField = 169;

constexpr std::int64_t dockControl = 30;
constexpr std::int64_t dockSwipe = 23;
constexpr std::int64_t horizontal = 1;
constexpr std::int64_t began = 1;
constexpr std::int64_t changed = 2;
constexpr std::int64_t ended = 4;
constexpr double fast = 9999.0;

constexpr int lastVersionWithoutPayload = 26;

}  // namespace

std::int32_t fixed(double value) {
  using Limits = std::numeric_limits<std::int32_t>;
  const double scaled = value * 65536.0;
  if (std::isnan(scaled)) {
    return 0;
  }
  if (scaled >= static_cast<double>(Limits::max())) {
    return Limits::max();
  }
  return scaled <= static_cast<double>(Limits::min()) ? Limits::min() : static_cast<std::int32_t>(scaled);
}

std::string iohidPayload(const SwipeReport& report) {
  constexpr std::uint32_t eventCount = 2;
  constexpr std::uint32_t swipeLength = 40;
  constexpr std::uint32_t hidDockSwipe = 23;  // kIOHIDEventTypeDockSwipe
  constexpr std::uint32_t swipeFlavor = 0x00030001;
  constexpr std::uint32_t velocityLength = 28;
  constexpr std::uint32_t velocity = 9;  // kIOHIDEventTypeVelocity
  constexpr std::uint32_t velocityDepth = 1;
  const auto word = [](auto value) { return static_cast<std::uint32_t>(value); };
  const std::uint32_t words[] = {word(report.timestamp), word(report.timestamp >> 32), 0, 0, 0, 0, eventCount,
                                 // the swipe
                                 swipeLength, hidDockSwipe, word(report.phase) << 24, 0, word(fixed(report.positionX)),
                                 word(fixed(report.positionY)), 0, 0, swipeFlavor, word(fixed(-report.progress)),
                                 // its velocity
                                 velocityLength, velocity, 0, velocityDepth, word(fixed(-report.velocity)), 0, 0};
  std::string bytes;
  for (const auto value : words) {
    for (const int shift : {0, 8, 16, 24}) {
      bytes.push_back(static_cast<char>(static_cast<unsigned char>(value >> shift)));
    }
  }
  return bytes;
}

DockSwipePoster::DockSwipePoster(Services services)
    : services_(services),
      requiresIOHIDPayload_(services.system.operatingSystemVersion().major > lastVersionWithoutPayload) {}

bool DockSwipePoster::postSwipe(std::int64_t steps) {
  if (requiresIOHIDPayload_) {
    return postAugmentedSwipe(steps);
  }
  if (steps == 0) {
    return false;
  }
  auto& events = services_.events;
  const auto event = events.CGEventCreate();
  if (event == nullptr) {
    return false;
  }
  // Unlike the augmented form this one means the same whatever the scrolling direction.
  const double direction = steps < 1 ? -1.0 : 1.0;
  events.CGEventSetIntegerValueField(*event, eventTypeField, dockControl);
  events.CGEventSetIntegerValueField(*event, gestureField, dockSwipe);
  events.CGEventSetIntegerValueField(*event, motionField, horizontal);
  events.CGEventSetDoubleValueField(*event, progressField, direction);
  events.CGEventSetDoubleValueField(*event, velocityXField, direction * fast);
  for (std::int64_t step = 0; step < std::abs(steps); ++step) {
    for (const auto phase : {began, ended}) {
      events.CGEventSetIntegerValueField(*event, phaseField, phase);
      events.CGEventPost(CGEventTap::session, *event);
    }
  }
  return true;
}

bool DockSwipePoster::postAugmentedSwipe(std::int64_t steps) {
  if (steps == 0) {
    return false;
  }
  const bool natural = naturalScrollingEnabled();
  const double sign = (steps < 1) == natural ? -1.0 : 1.0;
  for (std::int64_t step = 0; step < std::abs(steps); ++step) {
    for (const auto phase : {began, changed, ended}) {
      const auto event = augmentedEvent(sign, phase);
      if (event == nullptr) {
        return false;
      }
      services_.events.CGEventPost(CGEventTap::session, *event);
    }
  }
  return true;
}

CGEventPtr DockSwipePoster::augmentedEvent(double sign, std::int64_t phase) {
  auto& events = services_.events;
  const auto event = events.CGEventCreate();
  if (event == nullptr) {
    return nullptr;
  }
  const double velocity = sign * fast;
  events.CGEventSetIntegerValueField(*event, eventTypeField, dockControl);
  events.CGEventSetIntegerValueField(*event, gestureField, dockSwipe);
  events.CGEventSetIntegerValueField(*event, phaseField, phase);
  events.CGEventSetDoubleValueField(*event, progressField, sign);
  events.CGEventSetIntegerValueField(*event, motionField, horizontal);
  events.CGEventSetDoubleValueField(*event, velocityXField, velocity);
  events.CGEventSetDoubleValueField(*event, velocityYField, 0.0);
  events.CGEventSetIntegerValueField(*event, otherPhaseField, phase);
  events.CGEventSetDoubleValueField(*event, swipeFlavorField, 3.0);
  events.CGEventSetDoubleValueField(*event, machTimeField, static_cast<double>(services_.clock.machAbsoluteTime()));
  events.CGEventSetDoubleValueField(*event, positionXField, 0.1);
  return withIOHIDPayload(*event, phase, velocity);
}

CGEventPtr DockSwipePoster::withIOHIDPayload(const CGEvent& event, std::int64_t phase, double velocity) {
  constexpr std::string_view knownVersion("\0\0\0\2", 4);
  auto& events = services_.events;
  const auto data = events.CGEventCreateData(event);
  if (!data.starts_with(knownVersion)) {
    return nullptr;
  }
  const auto timestamp = events.CGEventGetTimestamp(event);
  const SwipeReport report{.timestamp = timestamp != 0 ? timestamp : services_.clock.machAbsoluteTime(),
                           .phase = phase,
                           .positionX = events.CGEventGetDoubleValueField(event, positionXField),
                           .positionY = events.CGEventGetDoubleValueField(event, positionYField),
                           .progress = events.CGEventGetDoubleValueField(event, progressField),
                           .velocity = velocity};
  return events.CGEventCreateFromData(data + iohidPayload(report));
}

bool DockSwipePoster::naturalScrollingEnabled() const {
  return isNaturalScrolling(services_.preferences.CFPreferencesCopyValue(scrollingDirectionPreference));
}

}  // namespace tallowin
