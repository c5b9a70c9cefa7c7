#pragma once

#include <algorithm>
#include <cstdint>
#include <optional>
#include <string>

#include "platform/identifiers.h"
#include "platform/images.h"

namespace tallowin {

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
