#pragma once

#include <sstream>
#include <string>

#include "app/app_delegate.h"
#include "platform/simulated/simulated_parts.h"
#include "platform/simulated/simulated_platform.h"
#include "tests/simulated_program.h"

namespace tallowin {

/// The whole resident program on a simulated desktop, started.
class ResidentProgram : public SimulatedProgram {
 public:
  explicit ResidentProgram(std::string_view scenarioJSON) : SimulatedProgram(scenarioJSON) {
    time.endAt(scenario.end);
    desktop.onQuit = [this](int status) { time.stop(status); };
    delegate.applicationDidFinishLaunching();
  }

  [[nodiscard]] SimulatedParts& parts() { return desktop.parts(); }

 private:
  static LaunchOptions standardOptions() {
    LaunchOptions options;
    options.port = LocalAPI::standardPort;
    return options;
  }

 public:
  std::ostringstream error;
  AppDelegate delegate{simulatedPlatform(desktop, bridge, preferences, images, time), settings, provider,
                       standardOptions(), error};
};

}  // namespace tallowin
