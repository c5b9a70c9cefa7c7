// The window server through functions found by name; and the symbol-table walk over good images and over images that
// are wrong in one known way.

#include "core/driven/cgs_bridge.h"

#include <cstring>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <limits>

#include "core/driven/mach_o_symbols.h"
#include "platform/private_functions.h"
#include "platform/simulated/simulated_loader.h"
#include "tests/simulated_program.h"

namespace tallowin {
namespace {

TEST(CGSBridge, HealthTellsWhatIsMissing) {
  const std::pair<const char*, std::uint32_t> cases[] = {
      {R"({})", 127},
      {R"({"managedDisplaySpaces": []})", 63},
      {R"({"managedDisplaySpaces": null})", 63},
      {R"({"managedDisplaySpaces": {"a": 1}})", 63},
      {R"({"connection": 0})", 62},
      {R"({"missingFunctions": ["SLSCopyManagedDisplaySpaces"]})", 127},
      {R"({"missingFunctions": ["SLSCopyManagedDisplaySpaces", "CGSCopyManagedDisplaySpaces"]})", 61},
      {R"({"missingFunctions": ["CGSSetSymbolicHotKeyEnabled", "SLSSetSymbolicHotKeyEnabled"]})", 95},
      {R"({"missingFunctions": ["SLSRegisterConnectionNotifyProc", "CGSRegisterConnectionNotifyProc"]})", 111},
  };
  for (const auto& [scenario, bits] : cases) {
    SimulatedProgram program(scenario);
    EXPECT_EQ(program.bridge.CGSBridgeProbe().bits(), bits) << scenario;
    EXPECT_EQ(program.bridge.CGSBridgeProbe().healthy(), (bits & 67U) == 67U) << scenario;
  }
}

TEST(CGSBridge, ALaterReceiverOfNotificationsReplacesTheFormerOne) {
  SimulatedProgram program(R"({"notificationFailures": [818],
                               "script": [{"at": 1, "do": "switchSpace", "space": 2}]})");
  std::vector<std::string> told;
  const auto receiver = [&told](const char* name) {
    return [&told, name](WindowServerEvent event) { told.push_back(name + std::to_string(event)); };
  };
  EXPECT_FALSE(program.bridge.CGSBridgeRegisterSpaceNotifications(receiver("first ")));
  EXPECT_EQ(program.take("SLSRegisterConnectionNotifyProc").size(), 5U) << "all are tried, whatever fails";
  EXPECT_FALSE(program.bridge.CGSBridgeRegisterSpaceNotifications(receiver("second ")));
  program.time.advance(std::chrono::seconds(2));
  EXPECT_THAT(told, testing::Each("second 1401"));
  EXPECT_FALSE(told.empty()) << "a registration that fails in part still keeps its receiver";
}

TEST(CGSBridge, TouchFramesCarryTheMeanOfTheirContacts) {
  SimulatedProgram program(R"({"script": [
    {"at": 1, "do": "touch", "contacts": [[0.25, 0.5], [0.75, 1.0]]}, {"at": 2, "do": "touch", "contacts": []}]})");
  std::vector<TouchFrame> frames;
  EXPECT_TRUE(program.bridge.CGSBridgeStartTouchMonitor([&](const TouchFrame& frame) { frames.push_back(frame); }));
  program.time.advance(std::chrono::seconds(3));
  ASSERT_EQ(frames.size(), 2U);
  EXPECT_EQ(frames[0].contactCount, 2);
  EXPECT_FLOAT_EQ(frames[0].meanX, 0.5F);
  EXPECT_FLOAT_EQ(frames[0].meanY, 0.75F);
  EXPECT_EQ((TouchFrame{frames[1].contactCount, frames[1].meanX, frames[1].meanY, 0}), (TouchFrame{0, 0, 0, 0}));
}

constexpr std::uint64_t huge = std::numeric_limits<std::uint64_t>::max();

// The walk asks for the name and its zero: 111 bytes for the one symbol that is looked for in earnest.
static_assert(std::char_traits<char>::length(private_functions::performBridgedOperation) + 1 == 111);

using Image = std::vector<std::byte>;

/// An image that holds "wanted" at 0x4000 behind another symbol, linked for 0x1000.
Image goodImage() {
  return machOImage({{"other", 0x3000}, {"wanted", 0x4000}}, 0x1000);
}

std::optional<std::uint64_t> find(const Image& image, std::string_view name = "wanted", std::int64_t slide = 0x100) {
  return addressOfSymbol({"/x/SkyLight", image, slide, 0x1000 + static_cast<std::uint64_t>(slide)}, name);
}

TEST(MachOSymbols, AnAddressIsTheValueMovedByTheSlide) {
  EXPECT_EQ(find(goodImage()), 0x4100);
  EXPECT_EQ(find(goodImage(), "wanted", -0x800), 0x3800);
  EXPECT_EQ(find(goodImage(), "other"), 0x3100);
  EXPECT_EQ(find(goodImage(), "want"), std::nullopt);
  EXPECT_EQ(find(goodImage(), "wanted2"), std::nullopt);
}

TEST(MachOSymbols, WhateverIsWrongCountsAsNotFound) {
  // The header is at byte 0, the segment command at 32, the symbol-table command at 104, the symbols at 128 and 144.
  struct Damage {
    const char* what;
    std::size_t at;
    std::uint64_t value;
    std::size_t width = 4;
  };
  const Damage damages[] = {
      {"another magic", 0, 0xfeedface},
      {"the other byte order", 0, 0xcffaedfe},
      {"more commands than there are", 16, 3},
      {"commands beyond the file", 20, 0x100000},
      {"commands cut short", 20, 76},
      {"no link-edit segment", 32, 0},
      {"a command of no size", 36, 0},
      {"a command of 7 bytes", 36, 7},
      {"a command beyond the commands", 36, 0xfffffff8},
      {"another segment", 50, '2', 1},
      {"a segment at the end of the addresses", 56, huge - 8, 8},
      {"a segment before the image", 56, 0, 8},
      {"a segment of no size", 64, 0, 8},
      {"a segment of all addresses", 64, huge, 8},
      {"a file offset beyond the address", 72, huge, 8},
      {"no symbol table", 104, 0},
      {"a symbol-table command beyond the commands", 108, 32},
      {"a symbol-table command too small", 108, 23},
      {"symbols before the segment", 112, 0},
      {"symbols beyond the segment", 112, 0xffffffff},
      {"no symbols", 116, 0},
      {"more symbols than fit", 116, 0xffffffff},
      {"strings beyond the segment", 120, 0xfffffff0},
      {"no strings", 124, 0},
      {"the name is not ended", 124, 13},
      {"more strings than fit", 124, 0xffffffff},
      {"the name has no index", 144, 0},
      {"the name is outside the strings", 144, 0x7fffffff},
      {"the symbol has no value", 152, 0, 8},
      {"the value overflows", 152, huge, 8},
  };
  for (const auto& [what, at, value, width] : damages) {
    auto image = goodImage();
    std::memcpy(&image.at(at), &value, width);
    EXPECT_EQ(find(image), std::nullopt) << what;
  }
}

TEST(MachOSymbols, AnImageCutOffAnywhereIsReadSafely) {
  auto image = goodImage();
  while (!image.empty()) {
    image.pop_back();
    EXPECT_EQ(find(image), std::nullopt) << image.size();
  }
}

}  // namespace
}  // namespace tallowin
