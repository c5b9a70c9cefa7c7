#pragma once

#include "platform/screen_capture.h"
#include "platform/simulated/desktop_state.h"
#include "platform/simulated/journal.h"

namespace tallowin {

/// Draws what the simulated displays show: the frames of the windows with their titles. Main thread only.
class SimulatedScreenCapture : public ScreenCapture {
 public:
  SimulatedScreenCapture(const DesktopState& state, Images& images, Journal& journal)
      : state_(state), images_(images), journal_(journal) {}

  bool CGPreflightScreenCaptureAccess() override { return state_.screenRecordingAllowed; }
  std::optional<Image> captureDisplay(DisplayID display) override;

 private:
  const DesktopState& state_;
  Images& images_;
  Journal& journal_;
};

}  // namespace tallowin
