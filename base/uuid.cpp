#include "base/uuid.h"

#include <array>
#include <cinttypes>
#include <cstdio>

namespace tallowin {

std::string randomUUID(const RandomBits& random) {
  constexpr std::uint64_t versionMask = 0xF000;
  constexpr std::uint64_t version4 = 0x4000;
  constexpr std::uint64_t variantMask = std::uint64_t{3} << 62;
  constexpr std::uint64_t variant = std::uint64_t{2} << 62;
  const std::uint64_t first = (random() & ~versionMask) | version4;
  const std::uint64_t second = (random() & ~variantMask) | variant;

  constexpr std::size_t length = 36;
  std::array<char, length + 1> text{};
  std::snprintf(text.data(), text.size(), "%08" PRIX64 "-%04" PRIX64 "-%04" PRIX64 "-%04" PRIX64 "-%012" PRIX64,
                first >> 32, (first >> 16) & 0xFFFF, first & 0xFFFF, second >> 48, second & 0xFFFF'FFFF'FFFF);
  return {text.data(), length};
}

}  // namespace tallowin
