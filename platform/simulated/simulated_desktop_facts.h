#pragma once

#include "platform/desktop_facts.h"
#include "platform/simulated/desktop_state.h"

namespace tallowin {

/// What the scenario says of the desktop. Main thread only.
class SimulatedDesktopFacts : public DesktopFacts {
 public:
  explicit SimulatedDesktopFacts(const DesktopState& state) : state_(state) {}

  std::optional<WindowManagerFacts> windowManager() override { return state_.windowManager; }
  std::vector<SetUpCheck> checks() override { return {}; }

 private:
  const DesktopState& state_;
};

}  // namespace tallowin
