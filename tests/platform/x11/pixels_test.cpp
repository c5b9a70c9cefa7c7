#include "platform/x11/pixels.h"

#include <gtest/gtest.h>

namespace tallowin {
namespace {

using namespace std::string_view_literals;

TEST(Pixels, EveryLayoutGivesTheSameColours) {
  // Two pixels: an orange (FF 80 00) and a blue (00 00 FF).
  const std::vector<std::uint32_t> expected = {0xFFFF8000, 0xFF0000FF};
  const struct {
    const char* what;
    PixelFormat format;
    std::string_view row;
  } cases[] = {
      {"usual", {}, "\x00\x80\xFF\x5A\xFF\x00\x00\x5A"sv},
      {"big-endian", {.leastSignificantByteFirst = false}, "\x5A\xFF\x80\x00\x5A\x00\x00\xFF"sv},
      {"red and blue swapped", {.redMask = 0xFF, .blueMask = 0xFF0000}, "\xFF\x80\x00\x5A\x00\x00\xFF\x5A"sv},
      {"packed, filled up", {.bitsPerPixel = 24}, "\x00\x80\xFF\xFF\x00\x00\x5A\x5A"sv},
      {"packed, not filled up", {.bitsPerPixel = 24, .scanlinePad = 8}, "\x00\x80\xFF\xFF\x00\x00"sv},
      // 0x3FF, 0x202 and 0x000; then 0, 0, 0x3FF.
      {"ten bits",
       {.redMask = 0x3FF00000, .greenMask = 0xFFC00, .blueMask = 0x3FF},
       "\x00\x08\xF8\x3F\xFF\x03\x00\x00"sv},
  };
  for (const auto& [what, format, row] : cases) {
    Image image{.width = 2, .height = 0, .pixels = {}};
    EXPECT_TRUE(appendRows(image, row, 1, format)) << what;
    EXPECT_EQ(image.pixels, expected) << what;
    EXPECT_EQ(image.height, 1) << what;
  }
}

TEST(Pixels, FiveBitsReachFullWhite) {
  const PixelFormat format{.bitsPerPixel = 16, .redMask = 0xF800, .greenMask = 0x7E0, .blueMask = 0x1F};
  Image image{.width = 1, .height = 0, .pixels = {}};
  ASSERT_TRUE(appendRows(image, "\xFF\xFF\x00\x00\x00\x00\x00\x00"sv, 2, format));
  EXPECT_EQ(image, (Image{1, 2, {0xFFFFFFFF, 0xFF000000}}));
}

TEST(Pixels, WhatIsNotARowIsRefused) {
  const struct {
    const char* what;
    PixelFormat format;
    std::string_view bytes;
    int width;
    int rows;
  } cases[] = {
      {"too short", {}, "\0\0\0"sv, 1, 1},
      {"too long", {}, "\0\0\0\0\0"sv, 1, 1},
      {"no rows", {}, ""sv, 1, 0},
      {"no width", {}, ""sv, 0, 1},
      {"odd pixels", {.bitsPerPixel = 12}, "\0\0\0\0"sv, 1, 1},
      {"odd padding", {.scanlinePad = 0}, "\0\0\0\0"sv, 1, 1},
      {"no red", {.redMask = 0}, "\0\0\0\0"sv, 1, 1},
  };
  for (const auto& [what, format, bytes, width, rows] : cases) {
    Image image{.width = width, .height = 0, .pixels = {}};
    EXPECT_FALSE(appendRows(image, bytes, rows, format)) << what;
    EXPECT_EQ(image.height, 0) << what;
    EXPECT_TRUE(image.pixels.empty()) << what;
  }
}

}  // namespace
}  // namespace tallowin
