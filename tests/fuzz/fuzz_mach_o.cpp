// Any bytes may be given to the symbol-table walk.

#include <cstring>
#include <vector>

#include "core/driven/mach_o_symbols.h"
#include "tests/fuzz/fuzzing.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  // The first bytes choose the slide and the load address, so that sums of addresses overflow too.
  std::int64_t slide = 0;
  std::uint64_t loadAddress = 0;
  if (size < sizeof slide + sizeof loadAddress) {
    return 0;
  }
  std::memcpy(&slide, data, sizeof slide);
  std::memcpy(&loadAddress, data + sizeof slide, sizeof loadAddress);
  const auto* const begin = reinterpret_cast<const std::byte*>(data);
  const std::vector<std::byte> image(begin + sizeof slide + sizeof loadAddress, begin + size);
  static_cast<void>(tallowin::addressOfSymbol({"/x/SkyLight", image, slide, loadAddress}, "wanted"));
  return 0;
}
