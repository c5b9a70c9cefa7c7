// The symbol-table walk over good images and over images that are wrong in one known way.

#include "core/mach_o_symbols.h"

#include <functional>
#include <gtest/gtest.h>
#include <limits>

#include "platform/private_functions.h"
#include "platform/simulated/mach_o_image_builder.h"

namespace tallowin {
namespace {

constexpr std::uint64_t huge = std::numeric_limits<std::uint64_t>::max();

// The walk asks for the name and its zero: 111 bytes for the one symbol that is looked for in earnest.
static_assert(std::char_traits<char>::length(private_functions::performBridgedOperation) + 1 == 111);

/// An image that holds "wanted" at 0x4000 behind another symbol, linked for 0x1000.
MachOImageBuilder goodImage() {
  MachOImageBuilder builder;
  builder.linkedAt = 0x1000;
  builder.symbols = {{"other", 0x3000, {}}, {"wanted", 0x4000, {}}};
  return builder;
}

std::optional<std::uint64_t> find(const MachOImageBuilder& builder, std::string_view name = "wanted",
                                  std::int64_t slide = 0x100) {
  const auto bytes = builder.build();
  return addressOfSymbol({"/x/SkyLight", bytes, slide, builder.linkedAt + static_cast<std::uint64_t>(slide)}, name);
}

TEST(MachOSymbols, AnAddressIsTheValueMovedByTheSlide) {
  EXPECT_EQ(find(goodImage()), 0x4100);
  EXPECT_EQ(find(goodImage(), "wanted", -0x800), 0x3800);
  EXPECT_EQ(find(goodImage(), "other"), 0x3100);
  EXPECT_EQ(find(goodImage(), "want"), std::nullopt);
  EXPECT_EQ(find(goodImage(), "wanted2"), std::nullopt);
}

TEST(MachOSymbols, WhateverIsWrongCountsAsNotFound) {
  struct Case {
    const char* why;
    std::function<void(MachOImageBuilder&)> damage;
  };
  const Case cases[] = {
      {"another magic", [](auto& image) { image.magic = 0xfeedface; }},
      {"the other byte order", [](auto& image) { image.magic = 0xcffaedfe; }},
      {"no link-edit segment", [](auto& image) { image.hasSegment = false; }},
      {"another segment", [](auto& image) { image.segmentName = "__LINKEDIT2"; }},
      {"no symbol table", [](auto& image) { image.hasSymbolTable = false; }},
      {"no symbols", [](auto& image) { image.symbolCount = 0; }},
      {"no strings", [](auto& image) { image.stringSize = 0; }},
      {"more commands than there are", [](auto& image) { image.commandCount = 3; }},
      {"commands beyond the file", [](auto& image) { image.commandsSize = 0x100000; }},
      {"commands cut short", [](auto& image) { image.commandsSize = MachOImageBuilder::segmentCommandSize + 4; }},
      {"a command of no size", [](auto& image) { image.segmentSizeOfCommand = 0; }},
      {"a command of 7 bytes", [](auto& image) { image.segmentSizeOfCommand = 7; }},
      {"a command beyond the commands", [](auto& image) { image.segmentSizeOfCommand = 0xfffffff8; }},
      {"a symbol-table command beyond the commands", [](auto& image) { image.symbolTableSizeOfCommand = 32; }},
      {"a symbol-table command too small", [](auto& image) { image.symbolTableSizeOfCommand = 23; }},
      {"a segment at the end of the addresses", [](auto& image) { image.segmentAddress = huge - 8; }},
      {"a segment before the image", [](auto& image) { image.segmentAddress = 0; }},
      {"a segment of no size", [](auto& image) { image.segmentSize = 0; }},
      {"a segment of all addresses", [](auto& image) { image.segmentSize = huge; }},
      {"a file offset beyond the address", [](auto& image) { image.segmentFileOffset = huge; }},
      {"symbols before the segment", [](auto& image) { image.symbolOffset = 0; }},
      {"symbols beyond the segment", [](auto& image) { image.symbolOffset = 0xffffffff; }},
      {"more symbols than fit", [](auto& image) { image.symbolCount = 0xffffffff; }},
      {"strings beyond the segment", [](auto& image) { image.stringOffset = 0xfffffff0; }},
      {"more strings than fit", [](auto& image) { image.stringSize = 0xffffffff; }},
      {"the name has no index", [](auto& image) { image.symbols[1].stringIndex = 0; }},
      {"the name is outside the strings", [](auto& image) { image.symbols[1].stringIndex = 0x7fffffff; }},
      {"the name is not ended", [](auto& image) { image.symbols[1].terminated = false; }},
      {"the symbol has no value", [](auto& image) { image.symbols[1].value = 0; }},
      {"the value overflows", [](auto& image) { image.symbols[1].value = huge; }},
  };
  for (const auto& [why, damage] : cases) {
    auto image = goodImage();
    damage(image);
    EXPECT_EQ(find(image), std::nullopt) << why;
  }
}

TEST(MachOSymbols, AnImageCutOffAnywhereIsReadSafely) {
  const auto whole = goodImage().build();
  for (std::size_t length = 0; length < whole.size(); ++length) {
    const std::vector<std::byte> cut(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(length));
    EXPECT_EQ(addressOfSymbol({"/x/SkyLight", cut, 0, 0x1000}, "wanted"), std::nullopt) << length;
  }
  EXPECT_EQ(addressOfSymbol({"/x/SkyLight", whole, 0, 0x1000}, "wanted"), 0x4000);
}

}  // namespace
}  // namespace tallowin
