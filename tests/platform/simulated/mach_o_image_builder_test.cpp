#include "platform/simulated/mach_o_image_builder.h"

#include <cstring>
#include <gtest/gtest.h>
#include <span>
#include <string>

#include "tests/platform/simulated/story.h"

namespace tallowin {
namespace {

/// Reads numbers at offsets from the headers of the format's own description, not from the builder's.
template <typename Number>
Number at(std::span<const std::byte> bytes, std::size_t offset) {
  Number number = 0;
  EXPECT_LE(offset + sizeof number, bytes.size());
  if (offset + sizeof number <= bytes.size()) {
    std::memcpy(&number, bytes.data() + offset, sizeof number);
  }
  return number;
}

TEST(MachOImageBuilderTest, everyPartIsWhereTheFormatSays) {
  MachOImageBuilder builder;
  builder.symbols = {{"_one", 0x11, {}, true}, {"_two", 0x22, {}, true}};
  builder.linkedAt = 0x7000;
  const auto image = builder.build();
  const std::span bytes(image);
  EXPECT_EQ(at<std::uint32_t>(bytes, 0), 0xfeedfacfU);
  EXPECT_EQ(at<std::uint32_t>(bytes, 16), 2U) << "commands";
  EXPECT_EQ(at<std::uint32_t>(bytes, 20), 72U + 24U) << "their size";
  // The segment: kind, size, name, address, mapped size, file offset.
  EXPECT_EQ(at<std::uint32_t>(bytes, 32), 25U);
  EXPECT_EQ(at<std::uint32_t>(bytes, 36), 72U);
  EXPECT_STREQ(reinterpret_cast<const char*>(&image[40]), "__LINKEDIT");
  EXPECT_EQ(at<std::uint64_t>(bytes, 56), 0x7000U + 128U);
  EXPECT_EQ(at<std::uint64_t>(bytes, 64), image.size() - 128U);
  EXPECT_EQ(at<std::uint64_t>(bytes, 72), 128U);
  // The symbol table: kind, size, symbols, strings.
  EXPECT_EQ(at<std::uint32_t>(bytes, 104), 2U);
  EXPECT_EQ(at<std::uint32_t>(bytes, 108), 24U);
  EXPECT_EQ(at<std::uint32_t>(bytes, 112), 128U);
  EXPECT_EQ(at<std::uint32_t>(bytes, 116), 2U);
  const auto strings = at<std::uint32_t>(bytes, 120);
  EXPECT_EQ(strings, 128U + 2 * 16U);
  EXPECT_EQ(strings + at<std::uint32_t>(bytes, 124), image.size());
  EXPECT_EQ(at<std::uint64_t>(bytes, 128 + 16 + 8), 0x22U);
  EXPECT_STREQ(reinterpret_cast<const char*>(&image[strings + at<std::uint32_t>(bytes, 128 + 16)]), "_two");
}

TEST(MachOImageBuilderTest, theLoadedImageLeadsToTheFunctionThatIsNotExported) {
  Story story;
  const auto images = story.desktop.loader().loadedImages();
  ASSERT_EQ(images.size(), 1U);
  const auto& image = images[0];
  EXPECT_TRUE(image.path.ends_with("/SkyLight"));
  EXPECT_EQ(image.loadAddress, reinterpret_cast<std::uintptr_t>(image.bytes.data()));
  const auto slide = static_cast<std::uint64_t>(image.slide);
  const auto linkEdit = at<std::uint64_t>(image.bytes, 56) + slide - at<std::uint64_t>(image.bytes, 72);
  EXPECT_EQ(linkEdit, image.loadAddress) << "file offsets count from the header";
  const auto symbols = at<std::uint32_t>(image.bytes, 112);
  const auto strings = at<std::uint32_t>(image.bytes, 120);
  void* found = nullptr;
  for (std::uint32_t i = 0; i < at<std::uint32_t>(image.bytes, 116); ++i) {
    const auto name = strings + at<std::uint32_t>(image.bytes, symbols + i * 16);
    if (std::string(reinterpret_cast<const char*>(&image.bytes[name])) == private_functions::performBridgedOperation) {
      found = reinterpret_cast<void*>(at<std::uint64_t>(image.bytes, symbols + i * 16 + 8) + slide);
    }
  }
  const auto& functions = simulatedFunctions();
  const auto entry = std::ranges::find(functions, std::string_view(private_functions::performBridgedOperation),
                                       &SimulatedFunction::name);
  EXPECT_EQ(found, entry->address);

  Story without(std::string(R"({"missingFunctions": [")") + private_functions::performBridgedOperation + R"("]})");
  const auto stripped = without.desktop.loader().loadedImages();
  EXPECT_EQ(at<std::uint32_t>(stripped[0].bytes, 116), 1U);
}

}  // namespace
}  // namespace tallowin
