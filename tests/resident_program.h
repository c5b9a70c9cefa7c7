#pragma once

#include <memory>
#include <sstream>
#include <string_view>

#include "app/app_delegate.h"
#include "platform/simulated/simulated_desktop.h"
#include "tests/simulated_program.h"

namespace tallowin {

/// The whole resident program on a simulated desktop, which can also end before its desktop does.
class ResidentProgram : public SimulatedProgram {
 public:
  explicit ResidentProgram(std::string_view scenarioJSON) : SimulatedProgram(scenarioJSON) {
    time.endAt(scenario.end);
    desktop.onQuit = [this](int status) { time.stop(status); };
  }

  void begin() {
    LaunchOptions options;
    options.port = LocalAPI::standardPort;
    delegate = std::make_unique<AppDelegate>(platform, storage, settings, provider, options, error);
    delegate->applicationDidFinishLaunching();
  }

  /// Runs from its begin to its end.
  void live() {
    begin();
    time.run();
    delegate.reset();
  }

  std::ostringstream error;
  std::unique_ptr<AppDelegate> delegate;  ///< null before its begin and after its end
};

}  // namespace tallowin
