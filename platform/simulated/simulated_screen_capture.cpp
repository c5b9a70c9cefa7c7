#include "platform/simulated/simulated_screen_capture.h"

#include <algorithm>
#include <ranges>

namespace tallowin {

namespace {

constexpr std::size_t mostPreviews = 64;  // more looks than a user goes back and forth between

}  // namespace

std::optional<SimulatedScreenCapture::View> SimulatedScreenCapture::view(DisplayID display) const {
  const auto found = std::ranges::find(state_.displays, display, &SimulatedDisplay::id);
  if (!state_.screenRecordingAllowed || found == state_.displays.end()) {
    return std::nullopt;
  }
  const auto origin = found->bounds.origin;
  View view{found->bounds.size, {}};
  for (const auto& window : state_.windows | std::views::reverse) {
    if (state_.isOnScreen(window)) {
      const auto at = window.frame.origin;
      view.boxes.push_back({{{at.x - origin.x, at.y - origin.y}, window.frame.size}, window.title});
    }
  }
  return view;
}

std::optional<Image> SimulatedScreenCapture::captureDisplay(DisplayID display) {
  journal_.record("captureDisplay", {{"display", display}});
  const auto shown = view(display);
  return shown ? images_.sketch(static_cast<int>(shown->size.width), static_cast<int>(shown->size.height), shown->boxes)
               : std::nullopt;
}

std::optional<std::string> SimulatedScreenCapture::capturePreview(DisplayID display, int width, int quality,
                                                                  Images& images) {
  auto shown = view(display);
  const auto known = std::ranges::find_if(previews_, [&](const Preview& preview) {
    return preview.view == shown && preview.width == width && preview.quality == quality;
  });
  if (known != previews_.end()) {
    journal_.record("captureDisplay", {{"display", display}});
    std::rotate(previews_.begin(), known, known + 1);
    return previews_.front().jpeg;
  }
  auto jpeg = ScreenCapture::capturePreview(display, width, quality, images);
  if (shown) {
    previews_.push_front({*std::move(shown), width, quality, jpeg});
    previews_.resize(std::min(previews_.size(), mostPreviews));
  }
  return jpeg;
}

}  // namespace tallowin
