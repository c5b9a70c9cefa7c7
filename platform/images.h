#pragma once

#include <algorithm>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/geometry.h"
#include "platform/identifiers.h"

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

/// Pictures of what is on the screens. Main thread only.
class ScreenCapture {
 public:
  virtual ~ScreenCapture() = default;

  /// Whether screen capture is permitted, asked without a prompt (CGPreflightScreenCaptureAccess).
  virtual bool CGPreflightScreenCaptureAccess() = 0;

  /// What a display shows now, in its own pixels; nothing without permission or when the display is gone.
  virtual std::optional<Image> captureDisplay(DisplayID display) = 0;

  /// The same as a JPEG no wider than `width` pixels, of a quality as for Images::encodeJPEG(). Nothing also when the
  /// picture cannot be scaled.
  virtual std::optional<std::string> capturePreview(DisplayID display, int width, int quality, Images& images) {
    const auto image = captureDisplay(display);
    if (!image || image->width <= 0) {
      return std::nullopt;
    }
    const int scaledWidth = std::min(width, image->width);
    const auto height = static_cast<int>(static_cast<std::int64_t>(image->height) * scaledWidth / image->width);
    const auto preview = images.scaled(*image, scaledWidth, std::max(1, height));
    return preview ? std::optional(images.encodeJPEG(*preview, quality)) : std::nullopt;
  }
};

}  // namespace tallowin
