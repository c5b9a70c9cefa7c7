#pragma once

#include "platform/simulated/desktop_state.h"
#include "platform/window_list.h"

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

}  // namespace tallowin
