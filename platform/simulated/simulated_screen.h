#pragma once

#include <deque>
#include <string>
#include <vector>

#include "platform/driven_services.h"
#include "platform/images.h"
#include "platform/simulated/desktop_state.h"
#include "platform/simulated/journal.h"

namespace tallowin {

/// The simulated list of windows. As on the real system, windows of other programs have names only for whom screen
/// recording is allowed. Main thread only.
class SimulatedWindowList : public WindowList {
 public:
  explicit SimulatedWindowList(const DesktopState& state) : state_(state) {}

  std::optional<PropertyList> CGWindowListCopyWindowInfo(std::uint32_t options, WindowNumber relativeTo) override;

 private:
  const DesktopState& state_;
};

/// Draws what the simulated displays show: the frames of the windows with their titles. Main thread only.
class SimulatedScreenCapture : public ScreenCapture {
 public:
  SimulatedScreenCapture(const DesktopState& state, Images& images, Journal& journal)
      : state_(state), images_(images), journal_(journal) {}

  bool CGPreflightScreenCaptureAccess() override { return state_.screenRecordingAllowed; }
  std::optional<Image> captureDisplay(DisplayID display) override;
  /// Drawn once for as long as the display looks as before: drawing takes longer than anything else in a simulation.
  std::optional<std::string> capturePreview(DisplayID display, int width, int quality, Images& images) override;

 private:
  /// All that a picture of a display depends on.
  struct View {
    CGSize size;
    std::vector<SketchBox> boxes;  ///< of the windows, the rearmost first
    bool operator==(const View&) const = default;
  };
  struct Preview {
    View view;
    int width;
    int quality;
    std::optional<std::string> jpeg;
  };

  [[nodiscard]] std::optional<View> view(DisplayID display) const;

  const DesktopState& state_;
  Images& images_;
  Journal& journal_;
  std::deque<Preview> previews_;  ///< the latest first
};

}  // namespace tallowin
