#include "platform/simulated/simulated_dock.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <expected>
#include <string_view>
#include <tuple>
#include <utility>

#include "base/json_text.h"
#include "base/preferences.h"

namespace tallowin {

namespace {

/// How serialised events begin: their version.
constexpr std::string_view eventVersion("\0\0\0\2", 4);

/// Time stamp, flags, location and fields.
using SerialisedEvent = std::tuple<std::uint64_t, std::uint64_t, double, double, std::map<CGEventField, PropertyList>>;

constexpr auto dockCategory = "EmulatedDock";

/// Later systems take only swipes that carry the device's own report.
constexpr int lastSystemWithPlainSwipes = 26;

/// A switch that has not arrived after this long is not waited for any more.
constexpr Duration patience = std::chrono::seconds(1);

// Undocumented fields of a Dock-control event.
constexpr CGEventField gestureField = 110;
constexpr CGEventField motionField = 123;
constexpr CGEventField progressField = 124;
constexpr CGEventField positionXField = 125;
constexpr CGEventField positionYField = 126;
constexpr CGEventField velocityField = 129;
constexpr CGEventField phaseField = 132;
constexpr std::int64_t dockSwipeGesture = 23;
constexpr std::int64_t horizontalMotion = 1;

constexpr std::size_t reportSize = 96;

std::int64_t littleEndian(std::string_view bytes, std::size_t offset, std::size_t width) {
  std::uint64_t value = 0;
  for (std::size_t i = width; i > 0; --i) {
    value = value << 8 | static_cast<unsigned char>(bytes[offset + i - 1]);
  }
  return width == 4 ? std::int64_t{static_cast<std::int32_t>(static_cast<std::uint32_t>(value))}
                    : static_cast<std::int64_t>(value);
}

/// Whether the 16.16 fixed-point number at `offset` is `value` cut off toward zero, held within range.
bool isFixed(std::string_view report, std::size_t offset, double value) {
  const double scaled = std::fmin(std::fmax(std::trunc(value * 65536.0), -2147483648.0), 2147483647.0);
  return static_cast<double>(littleEndian(report, offset, 4)) == scaled;
}

struct Expected {
  std::size_t offset;
  std::size_t width;
  std::int64_t value;
};

/// An empty text when the report agrees with the event's fields, else what is wrong.
std::string reportFault(const SimulatedEvent& event, std::string_view report) {
  if (report.size() != reportSize) {
    return "its device report has " + std::to_string(report.size()) + " bytes instead of 96";
  }
  const Expected constants[] = {
      {8, 8, 0},  {16, 8, 0}, {24, 4, 2},       {28, 4, 40}, {32, 4, dockSwipeGesture},
      {40, 4, 0}, {52, 8, 0}, {60, 4, 0x30001}, {68, 4, 28}, {72, 4, 9},
      {76, 4, 0}, {80, 4, 1}, {88, 4, 0},       {92, 4, 0},  {36, 4, event.integer(phaseField) << 24},
  };
  for (const auto& [offset, width, value] : constants) {
    if (littleEndian(report, offset, width) != value) {
      return "its device report is wrong at byte " + std::to_string(offset);
    }
  }
  const auto time = static_cast<std::uint64_t>(littleEndian(report, 0, 8));
  if (time == 0 || (event.timestamp != 0 && time != event.timestamp)) {
    return "its device report has another time";
  }
  const bool agrees =
      isFixed(report, 44, event.real(positionXField)) && isFixed(report, 48, event.real(positionYField)) &&
      isFixed(report, 64, -event.real(progressField)) && isFixed(report, 84, -event.real(velocityField));
  return agrees ? "" : "its device report contradicts its fields";
}

/// One event of a Dock swipe gesture, as read from its fields.
struct DockSwipe {
  enum class Phase { began = 1, changed = 2, ended = 4 };  // IOHIDEventTypes.h, gesture phase bits
  Phase phase = Phase::began;
  int direction = 1;       ///< +1 or -1, the sign of field 124
  bool augmented = false;  ///< it carries the device's own report behind its fields

  /// 1 to the right, -1 to the left. Plain swipes mean the same whatever the scrolling direction.
  [[nodiscard]] int meaning(bool naturalScrolling) const {
    return augmented && !naturalScrolling ? -direction : direction;
  }
};

/// Reads a horizontal Dock swipe. The error says what is wrong with it. A device report, where there is one, must be
/// 96 bytes long and agree with the fields that it repeats.
std::expected<DockSwipe, std::string> readDockSwipe(const SimulatedEvent& event) {
  if (event.integer(gestureField) != dockSwipeGesture) {
    return std::unexpected("it is no Dock swipe");
  }
  if (event.integer(motionField) != horizontalMotion) {
    return std::unexpected("its motion is not horizontal");
  }
  const double progress = event.real(progressField);
  if (!std::isfinite(progress) || progress == 0) {
    return std::unexpected("it has no direction");
  }
  const auto phase = event.integer(phaseField);
  if (phase != 1 && phase != 2 && phase != 4) {
    return std::unexpected("its phase is unknown");
  }
  if (!event.payload.empty()) {
    if (auto fault = reportFault(event, event.payload); !fault.empty()) {
      return std::unexpected(std::move(fault));
    }
  }
  return DockSwipe{static_cast<DockSwipe::Phase>(phase), progress > 0 ? 1 : -1, !event.payload.empty()};
}

}  // namespace

std::int64_t SimulatedEvent::integer(CGEventField field) const {
  const auto found = fields.find(field);
  return found != fields.end() ? found->second.get<std::int64_t>() : 0;
}

double SimulatedEvent::real(CGEventField field) const {
  const auto found = fields.find(field);
  return found != fields.end() ? found->second.get<double>() : 0;
}

std::string SimulatedEvent::serialised() const {
  const PropertyList list = SerialisedEvent{timestamp, flags, location.x, location.y, fields};
  return std::string(eventVersion) + list.dump() + '\n' + payload;
}

std::optional<SimulatedEvent> SimulatedEvent::deserialised(std::string_view bytes) {
  const auto end = bytes.find('\n');
  if (!bytes.starts_with(eventVersion) || end == std::string_view::npos) {
    return std::nullopt;
  }
  const auto list = parseJSON(bytes.substr(eventVersion.size(), end - eventVersion.size()));
  if (!list) {
    return std::nullopt;
  }
  SimulatedEvent event;
  std::tie(event.timestamp, event.flags, event.location.x, event.location.y, event.fields) =
      list->get<SerialisedEvent>();
  event.payload = bytes.substr(end + 1);
  return event;
}

bool SimulatedDock::handle(const SimulatedEvent& event) {
  if (event.type() == SimulatedEvent::dockControl) {
    swipe(event);
    return true;
  }
  return pressHotKey(event);
}

std::string SimulatedDock::meaning(const SimulatedEvent& event) const {
  if (event.type() == SimulatedEvent::dockControl) {
    const auto read = readDockSwipe(event);
    if (!read) {
      return "a malformed gesture";
    }
    const auto* const phase = read->phase == DockSwipe::Phase::began   ? " begins"
                              : read->phase == DockSwipe::Phase::ended ? " ends"
                                                                       : " goes on";
    return (read->meaning(isNaturalScrolling()) > 0 ? "a swipe to the right" : "a swipe to the left") +
           std::string(phase);
  }
  const bool isKey = event.type() == SimulatedEvent::keyDown || event.type() == SimulatedEvent::keyUp;
  const auto keyCode = static_cast<VirtualKeyCode>(event.integer(SimulatedEvent::keyCodeField));
  const auto hotKey = isKey ? pressedHotKey(state_.hotKeys, keyCode, event.flags) : std::nullopt;
  if (!hotKey) {
    return "";
  }
  return *hotKey == symbolic_hot_key::moveLeft ? "one Space to the left"
         : *hotKey == symbolic_hot_key::moveRight
             ? "one Space to the right"
             : "desktop " + std::to_string(*hotKey - symbolic_hot_key::firstDesktop + 1);
}

bool SimulatedDock::isNaturalScrolling() const {
  const auto found = state_.globalPreferences.find(scrollingDirectionPreference);
  return tallowin::isNaturalScrolling(found != state_.globalPreferences.end() ? std::optional(found->second)
                                                                              : std::nullopt);
}

void SimulatedDock::swipe(const SimulatedEvent& event) {
  const auto read = readDockSwipe(event);
  if (!read) {
    log_.error(dockCategory, "ignored a malformed gesture: " + read.error());
    return;
  }
  if (state_.systemVersion.major > lastSystemWithPlainSwipes && !read->augmented) {
    log_.error(dockCategory, "ignored a gesture without a device report");
    return;
  }
  if (read->phase == DockSwipe::Phase::began) {
    swipeDirection_ = read->direction;
    return;
  }
  if (!swipeDirection_ || *swipeDirection_ != read->direction) {
    log_.error(dockCategory, "ignored a malformed gesture: it did not begin");
    swipeDirection_.reset();
    return;
  }
  if (read->phase == DockSwipe::Phase::ended) {
    swipeDirection_.reset();
    step(read->meaning(isNaturalScrolling()), SwitchCause::gesture);
  }
}

bool SimulatedDock::pressHotKey(const SimulatedEvent& event) {
  const auto keyCode = static_cast<VirtualKeyCode>(event.integer(SimulatedEvent::keyCodeField));
  const bool isPress = event.type() == SimulatedEvent::keyDown;
  const auto hotKey = isPress ? pressedHotKey(state_.hotKeys, keyCode, event.flags) : std::nullopt;
  if (!hotKey) {
    return false;
  }
  if (*hotKey == symbolic_hot_key::moveLeft || *hotKey == symbolic_hot_key::moveRight) {
    step(*hotKey == symbolic_hot_key::moveLeft ? -1 : 1, SwitchCause::hotKey);
  } else {
    switchToDesktop(static_cast<std::size_t>(*hotKey - symbolic_hot_key::firstDesktop) + 1);
  }
  return true;
}

void SimulatedDock::activeSpaceChanged(const std::string& display) {
  if (const auto found = headings_.find(display); found != headings_.end()) {
    found->second.space.reset();
  }
}

void SimulatedDock::step(int steps, SwitchCause cause) {
  const auto display = spaces_.displayUnderPointer();
  if (!display) {
    return;
  }
  auto& heading = headings_[*display];
  heading.steps += steps;
  heading.cause = cause;
  heading.work = queue_.after(Duration::zero(), [this, display = *display] { perform(display); });
}

/// The Space that steps count from: the one that the display is heading for, else the active one.
std::optional<ManagedSpaceID> SimulatedDock::departure(Heading& heading, const DesktopDisplay& row) const {
  const Duration since(clock_.machAbsoluteTime() - heading.since);  // a tick is a nanosecond
  if (heading.space == row.current || since > patience) {
    heading.space.reset();
  }
  return heading.space ? heading.space : row.current;
}

void SimulatedDock::perform(const std::string& display) {
  auto& heading = headings_[display];
  const int steps = std::exchange(heading.steps, 0);
  if (state_.screenLocked) {
    return;
  }
  const auto rows = spaces_.displays();
  const auto row = std::ranges::find(rows, display, &DesktopDisplay::id);
  if (row == rows.end()) {
    return;
  }
  const auto from = departure(heading, *row);
  const auto at = std::ranges::find(row->spaces, from, [](const auto& space) { return std::optional(space.id); });
  if (at == row->spaces.end()) {
    return;
  }
  // Past an end the Dock stays on the last Space.
  const auto last = static_cast<std::ptrdiff_t>(row->spaces.size()) - 1;
  const auto target = std::clamp<std::ptrdiff_t>(at - row->spaces.begin() + steps, 0, last);
  if (target != at - row->spaces.begin()) {
    head(heading, row->spaces[static_cast<std::size_t>(target)].id, heading.cause);
  }
}

void SimulatedDock::switchToDesktop(std::size_t number) {
  if (state_.screenLocked) {
    return;
  }
  std::size_t seen = 0;
  for (const auto& row : spaces_.displays()) {
    for (const auto& space : row.spaces) {
      if (space.isFullscreen || ++seen != number) {
        continue;
      }
      auto& heading = headings_[row.id];
      heading.steps = 0;
      heading.work.cancel();
      if (departure(heading, row) != space.id) {
        head(heading, space.id, SwitchCause::hotKey);
      }
      return;
    }
  }
}

void SimulatedDock::head(Heading& heading, ManagedSpaceID space, SwitchCause cause) {
  heading.space = space;
  heading.since = clock_.machAbsoluteTime();
  spaces_.switchTo(space, cause);
}

}  // namespace tallowin
