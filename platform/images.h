#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/geometry.h"

namespace tallowin {

/// A picture: rows from top to bottom, each pixel as 0xffRRGGBB in the machine's byte order.
struct Image {
  int width = 0;
  int height = 0;
  std::vector<std::uint32_t> pixels;  ///< width × height of them
  bool operator==(const Image&) const = default;
};

/// One labelled rectangle of a sketch, in pixels from the top left of the image.
struct SketchBox {
  CGRect frame;
  std::string label;  ///< UTF-8, drawn inside the frame's top edge and cut off at its sides
  bool operator==(const SketchBox&) const = default;
};

/// Decoding, scaling and encoding of pictures. Any thread, except sketch(), which the main thread calls.
class Images {
 public:
  virtual ~Images() = default;

  /// Any format the system reads, turned the right way up; nothing when the bytes are no picture, or one whose pixels
  /// take more than 128 MiB.
  virtual std::optional<Image> decode(std::string_view bytes) = 0;
  /// Scaled to exactly this size with high-quality interpolation. Nothing when a side is not positive.
  virtual std::optional<Image> scaled(const Image& image, int width, int height) = 0;
  virtual std::string encodePNG(const Image& image) = 0;
  /// `quality` from 0 (small) to 100 (good).
  virtual std::string encodeJPEG(const Image& image, int quality) = 0;

  /// A drawing of boxes, the first one at the back; without their labels where none are wanted.
  virtual std::optional<Image> sketch(int width, int height, const std::vector<SketchBox>& boxes) = 0;
};

}  // namespace tallowin
