// Any bytes may be given as a scenario.

#include <cstdint>
#include <string_view>

#include "platform/simulated/scenario.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static_cast<void>(tallowin::Scenario::parse({reinterpret_cast<const char*>(data), size}));
  return 0;
}
