#pragma once

#include <functional>
#include <random>

#include "platform/simulated/desktop_state.h"
#include "platform/system.h"

namespace tallowin {

/// The simulated process and its login. Main thread only.
class SimulatedSystem : public System {
 public:
  explicit SimulatedSystem(const DesktopState& state) : state_(state) {}

  OperatingSystemVersion operatingSystemVersion() override { return state_.systemVersion; }
  std::string operatingSystemName() override { return "macOS"; }
  std::string operatingSystemVersionString() override;
  ProcessID processIdentifier() override { return state_.ownProcess; }
  std::uint64_t randomBits() override { return random_(); }
  void terminate(int status) override { onTerminate(status); }
  PropertyList CGSessionCopyCurrentDictionary() override;

  /// Told when the process ends itself.
  std::function<void(int status)> onTerminate = [](int) {};

 private:
  const DesktopState& state_;
  std::mt19937_64 random_{1};
};

}  // namespace tallowin
