#pragma once

#include "platform/screen_capture.h"
#include "platform/x11/pixels.h"
#include "platform/x11/x11_connection.h"

namespace tallowin {

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
