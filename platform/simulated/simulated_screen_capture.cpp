#include "platform/simulated/simulated_screen_capture.h"

#include <algorithm>
#include <ranges>
#include <vector>

namespace tallowin {

std::optional<Image> SimulatedScreenCapture::captureDisplay(DisplayID display) {
  journal_.record("captureDisplay", {{"display", display}});
  const auto found = std::ranges::find(state_.displays, display, &SimulatedDisplay::id);
  if (!state_.screenRecordingAllowed || found == state_.displays.end()) {
    return std::nullopt;
  }
  const auto origin = found->bounds.origin;
  std::vector<SketchBox> boxes;
  for (const auto& window : state_.windows | std::views::reverse) {
    if (state_.isOnScreen(window)) {
      const auto at = window.frame.origin;
      boxes.push_back({{{at.x - origin.x, at.y - origin.y}, window.frame.size}, window.title});
    }
  }
  return images_.sketch(static_cast<int>(found->bounds.size.width), static_cast<int>(found->bounds.size.height), boxes);
}

}  // namespace tallowin
