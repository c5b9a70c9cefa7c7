#include "commands/driven/iohid_payload.h"

#include <cmath>
#include <limits>

namespace tallowin {

namespace {

/// Appends numbers with their least significant byte first.
class LittleEndian {
 public:
  LittleEndian& word(std::uint32_t value) { return append(value, 4); }
  LittleEndian& doubleWord(std::uint64_t value) { return append(value, 8); }
  LittleEndian& fixedPoint(double value) { return word(static_cast<std::uint32_t>(fixed(value))); }
  [[nodiscard]] std::string take() { return std::move(bytes_); }

 private:
  LittleEndian& append(std::uint64_t value, int width) {
    for (int i = 0; i < width; ++i) {
      bytes_.push_back(static_cast<char>(static_cast<unsigned char>(value >> (8 * i))));
    }
    return *this;
  }

  std::string bytes_;
};

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
  constexpr std::uint32_t dockSwipe = 23;  // kIOHIDEventTypeDockSwipe
  constexpr std::uint32_t swipeFlavor = 0x00030001;
  constexpr std::uint32_t velocityLength = 28;
  constexpr std::uint32_t velocity = 9;  // kIOHIDEventTypeVelocity
  constexpr std::uint32_t velocityDepth = 1;
  LittleEndian bytes;
  bytes.doubleWord(report.timestamp).doubleWord(0).doubleWord(0).word(eventCount);
  bytes.word(swipeLength).word(dockSwipe).word(static_cast<std::uint32_t>(report.phase) << 24).word(0);
  bytes.fixedPoint(report.positionX).fixedPoint(report.positionY).doubleWord(0);
  bytes.word(swipeFlavor).fixedPoint(-report.progress);
  bytes.word(velocityLength).word(velocity).word(0).word(velocityDepth);
  bytes.fixedPoint(-report.velocity).word(0).word(0);
  return bytes.take();
}

}  // namespace tallowin
