#include "platform/simulated/simulated_window_list.h"

namespace tallowin {

namespace {

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

}  // namespace tallowin
