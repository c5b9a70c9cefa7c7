#include "platform/simulated/simulated_screen.h"

#include <algorithm>
#include <ranges>

namespace tallowin {

namespace {

constexpr std::size_t mostPreviews = 64;  // more looks than a user goes back and forth between

PropertyList describe(const SimulatedWindow& window, const DesktopState& state) {
  PropertyList description = {
      {"kCGWindowLayer", window.layer},
      {"kCGWindowOwnerPID", window.pid},
      {"kCGWindowNumber", window.number},
      {"kCGWindowBounds",
       {{"X", window.frame.origin.x},
        {"Y", window.frame.origin.y},
        {"Width", window.frame.size.width},
        {"Height", window.frame.size.height}}},
      {"kCGWindowAlpha", window.alpha},
      {"kCGWindowOwnerName", state.applicationName(window.pid)},
  };
  if (state.screenRecordingAllowed || window.pid == state.ownProcess) {
    description["kCGWindowName"] = window.title;
  }
  return description;
}

}  // namespace

std::optional<PropertyList> SimulatedWindowList::CGWindowListCopyWindowInfo(std::uint32_t options,
                                                                            WindowNumber relativeTo) {
  auto list = PropertyList::array();
  for (const auto& window : state_.windows) {
    const bool excluded = ((options & CGWindowListOption::includingWindow) != 0 && window.number != relativeTo) ||
                          ((options & CGWindowListOption::onScreenOnly) != 0 && !state_.isOnScreen(window)) ||
                          // Icons and the picture of the desktop lie below everything else.
                          ((options & CGWindowListOption::excludeDesktopElements) != 0 && window.layer < 0);
    if (!excluded) {
      list.push_back(describe(window, state_));
    }
  }
  return list;
}

std::optional<SimulatedScreenCapture::View> SimulatedScreenCapture::view(DisplayID display) const {
  const auto* const found = state_.display(display);
  if (!state_.screenRecordingAllowed || found == nullptr) {
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
