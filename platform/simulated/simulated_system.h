#pragma once

#include "platform/simulated/desktop_state.h"
#include "platform/system.h"

namespace tallowin {

/// The simulated process and session. Main thread only.
class SimulatedSystem : public System {
 public:
  explicit SimulatedSystem(const DesktopState& state) : state_(state) {}

  OperatingSystemVersion operatingSystemVersion() override { return state_.systemVersion; }
  std::string operatingSystemVersionString() override;
  ProcessID processIdentifier() override { return state_.ownProcess; }
  PropertyList CGSessionCopyCurrentDictionary() override;

 private:
  const DesktopState& state_;
};

}  // namespace tallowin
