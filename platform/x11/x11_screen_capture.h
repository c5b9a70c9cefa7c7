#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "platform/images.h"
#include "platform/screen_capture.h"
#include "platform/x11/x11_connection.h"

namespace tallowin {

/// How a TrueColor server lays out the pixels of a ZPixmap image (X Window System Protocol, image formats).
struct PixelFormat {
  int bitsPerPixel = 32;  ///< 8, 16, 24 or 32
  int scanlinePad = 32;   ///< each row is filled up to a multiple of this many bits
  bool leastSignificantByteFirst = true;
  std::uint32_t redMask = 0xFF0000;
  std::uint32_t greenMask = 0xFF00;
  std::uint32_t blueMask = 0xFF;
};

/// The bytes of one row, its filling included; 0 for a format that cannot be read.
[[nodiscard]] std::size_t rowLength(const PixelFormat& format, int width);

/// Appends rows of `image.width` pixels to an image. False, with the image as it was, when the bytes are not exactly
/// `rows` rows of the format or a mask is empty.
[[nodiscard]] bool appendRows(Image& image, std::string_view bytes, int rows, const PixelFormat& format);

/// Pictures of the whole root window, as display 1. X11 asks for no permission. Nothing on servers whose root window
/// has a palette instead of true colours.
class X11ScreenCapture : public ScreenCapture {
 public:
  explicit X11ScreenCapture(X11Connection& connection) : connection_(connection) {}

  bool CGPreflightScreenCaptureAccess() override { return connection_.alive(); }
  std::optional<Image> captureDisplay(DisplayID display) override;

 private:
  [[nodiscard]] std::optional<PixelFormat> pixelFormat() const;
  bool captureRows(Image& image, int top, int rows, const PixelFormat& format);

  X11Connection& connection_;
};

}  // namespace tallowin
