#include "platform/pictures/qt_images.h"

#include <gtest/gtest.h>

namespace tallowin {
namespace {

TEST(QtImages, PicturesAreScaledAndComeBack) {
  QtImages images(true);
  const Image picture{2, 2, {0xffff0000, 0xff00ff00, 0xff0000ff, 0xffffffff}};
  EXPECT_EQ(images.decode(images.encodePNG(picture)), picture);
  const auto scaled = images.scaled(picture, 128, 64);
  ASSERT_TRUE(scaled);
  EXPECT_EQ(scaled->pixels.size(), 128U * 64U);
  EXPECT_EQ(images.encodeJPEG(*scaled, 80).substr(0, 3), "\xff\xd8\xff");
  EXPECT_EQ(images.scaled(picture, 0, 5), std::nullopt);
  EXPECT_EQ(images.decode("no picture"), std::nullopt);
  EXPECT_EQ(images.decode(""), std::nullopt);
  const auto sketch = images.sketch(10, 10, {{{{2, 2}, {4, 4}}, "a title"}});
  ASSERT_TRUE(sketch);
  EXPECT_NE(sketch->pixels.at(3 * 10 + 3), sketch->pixels.front());
}

}  // namespace
}  // namespace tallowin
