#include "platform/emulated/dock_swipe.h"

#include <cmath>
#include <string_view>

namespace tallowin {

namespace {

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
std::string reportFault(const EmulatedEvent& event, std::string_view report) {
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

}  // namespace

bool isDockControl(const EmulatedEvent& event) {
  return event.type() == EmulatedEvent::dockControl;
}

std::expected<DockSwipe, std::string> readDockSwipe(const EmulatedEvent& event) {
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

}  // namespace tallowin
