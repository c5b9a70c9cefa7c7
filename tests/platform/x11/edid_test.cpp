#include "platform/x11/edid.h"

#include <gtest/gtest.h>
#include <numeric>

namespace tallowin {
namespace {

/// A base block of maker "DEL", product 0x40F3, serial 0x0001E240, with a right checksum.
std::string baseBlock(std::string_view descriptor = {}) {
  std::string block("\x00\xFF\xFF\xFF\xFF\xFF\xFF\x00\x10\xAC\xF3\x40\x40\xE2\x01\x00", 16);
  block.resize(128, '\0');
  block.replace(72, descriptor.size(), descriptor);
  const auto sum = std::accumulate(block.begin(), block.end(), 0U,
                                   [](unsigned total, char byte) { return total + static_cast<unsigned char>(byte); });
  block[127] = static_cast<char>(256 - sum % 256);
  return block;
}

TEST(MonitorIdentity, NamesMakerProductAndSerial) {
  using namespace std::string_view_literals;
  const struct {
    const char* what;
    std::string edid;
    std::optional<std::string> expected;
  } cases[] = {
      {"numbers only", baseBlock(), "DEL-40F3-0001E240"},
      {"serial text", baseBlock("\0\0\0\xFF\0MT0167B\n   \x20"sv), "DEL-40F3-0001E240-MT0167B"},
      {"serial text of full length", baseBlock("\0\0\0\xFF\0ABCDEFGHIJKLM"sv), "DEL-40F3-0001E240-ABCDEFGHIJKLM"},
      {"serial text of blanks and rubbish", baseBlock("\0\0\0\xFF\0 \x01\xFF\n"sv), "DEL-40F3-0001E240"},
      {"serial text with a hyphen first", baseBlock("\0\0\0\xFF\0-7\n"sv), "DEL-40F3-0001E240--7"},
      {"another descriptor", baseBlock("\0\0\0\xFC\0DELL U2415\n"sv), "DEL-40F3-0001E240"},
      {"extension blocks", baseBlock().append(128, 'x'), "DEL-40F3-0001E240"},
      {"nothing", "", std::nullopt},
      {"cut short", baseBlock().substr(0, 127), std::nullopt},
      {"no header", std::string("x").append(baseBlock()), std::nullopt},
  };
  for (const auto& [what, edid, expected] : cases) {
    EXPECT_EQ(monitorIdentity(edid), expected) << what;
  }
  auto damaged = baseBlock();
  damaged[20] = 1;
  EXPECT_EQ(monitorIdentity(damaged), std::nullopt) << "wrong checksum";
}

}  // namespace
}  // namespace tallowin
