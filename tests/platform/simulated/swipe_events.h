#pragma once

#include <cmath>
#include <cstdint>
#include <string>

#include "platform/simulated/simulated_event.h"

namespace tallowin {

/// A horizontal Dock swipe in one phase (1 began, 2 changed, 4 ended).
inline SimulatedEvent swipeEvent(std::int64_t phase, double progress) {
  SimulatedEvent event;
  event.fields = {{55, std::int64_t{30}},
                  {110, std::int64_t{23}},
                  {123, std::int64_t{1}},
                  {124, progress},
                  {125, 0.5},
                  {126, -0.25},
                  {129, 1.5},
                  {132, phase}};
  return event;
}

inline void putLittleEndian(std::string& bytes, std::uint64_t value, std::size_t width) {
  for (std::size_t i = 0; i < width; ++i) {
    bytes += static_cast<char>(static_cast<unsigned char>(value >> (8 * i)));
  }
}

/// 16.16 fixed point, cut off toward zero.
inline std::uint64_t fixedPoint(double value) {
  return static_cast<std::uint32_t>(static_cast<std::int32_t>(std::trunc(value * 65536)));
}

/// The device's report that goes with swipeEvent(): 96 bytes.
inline std::string swipeReport(std::int64_t phase, double progress) {
  struct Number {
    std::uint64_t value;
    std::size_t width;
  };
  const Number numbers[] = {{123456789, 8},
                            {0, 8},
                            {0, 8},
                            {2, 4},
                            {40, 4},
                            {23, 4},
                            {static_cast<std::uint64_t>(phase) << 24, 4},
                            {0, 4},
                            {fixedPoint(0.5), 4},
                            {fixedPoint(-0.25), 4},
                            {0, 8},
                            {0x30001, 4},
                            {fixedPoint(-progress), 4},
                            {28, 4},
                            {9, 4},
                            {0, 4},
                            {1, 4},
                            {fixedPoint(-1.5), 4},
                            {0, 4},
                            {0, 4}};
  std::string report;
  for (const auto& [value, width] : numbers) {
    putLittleEndian(report, value, width);
  }
  return report;
}

inline SimulatedEvent augmentedSwipeEvent(std::int64_t phase, double progress) {
  auto event = swipeEvent(phase, progress);
  event.payload = swipeReport(phase, progress);
  return event;
}

}  // namespace tallowin
