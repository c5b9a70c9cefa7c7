#pragma once

#include <optional>

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
};

}  // namespace tallowin
