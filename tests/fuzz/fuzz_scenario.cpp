// Any bytes may be given as a scenario.

#include "platform/simulated/scenario.h"
#include "tests/fuzz/fuzzing.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const auto scenario = tallowin::Scenario::parse(tallowin::inputText(data, size));
  tallowin::require(scenario || !scenario.error().empty(), "who writes a scenario is told what is wrong");
  return 0;
}
