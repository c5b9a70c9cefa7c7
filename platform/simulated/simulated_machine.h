#pragma once

#include <functional>
#include <random>

#include "platform/desktop.h"
#include "platform/displays.h"
#include "platform/log.h"
#include "platform/processes.h"
#include "platform/simulated/desktop_state.h"
#include "platform/simulated/journal.h"
#include "platform/system.h"
#include "platform/workspace.h"

namespace tallowin {

/// The simulated machine as the scenario describes it: its displays, its system and the program's own process there.
/// What is logged becomes a line of the journal; so do child processes and scripts, which are not started: what they
/// print and answer is what the scenario says. Main thread only.
class SimulatedMachine : public Log,
                         public Displays,
                         public System,
                         public DesktopFacts,
                         public Processes,
                         public AppleScript {
 public:
  SimulatedMachine(const DesktopState& state, Journal& journal) : state_(state), journal_(journal) {}

  /// Told when the process ends itself.
  std::function<void(int status)> onTerminate = [](int) {};

  void write(Level level, std::string_view category, std::string_view message) override;

  DisplayID CGMainDisplayID() override;
  CGRect CGDisplayBounds(DisplayID display) override;
  DisplayID CGDisplayGetDisplayIDFromUUID(std::string_view uuid) override;
  bool CGDisplayIsBuiltin(DisplayID display) override;
  std::vector<Screen> screens() override;
  std::vector<std::string> displaySetIdentifiers() override { return {}; }
  std::vector<Monitor> monitors() override { return {}; }

  OperatingSystemVersion operatingSystemVersion() override { return state_.systemVersion; }
  std::string operatingSystemName() override { return "macOS"; }
  std::string operatingSystemVersionString() override;
  ProcessID processIdentifier() override { return state_.ownProcess; }
  std::uint64_t randomBits() override { return random_(); }
  void terminate(int status) override { onTerminate(status); }
  PropertyList CGSessionCopyCurrentDictionary() override;

  std::optional<WindowManagerFacts> windowManager() override { return state_.windowManager; }
  std::vector<SetUpCheck> checks() override { return {}; }

  std::expected<void, std::string> launch(const ProcessRequest& request) override;
  std::expected<std::string, std::string> run(const ProcessRequest& request) override;
  std::optional<std::vector<std::string>> executeAndReturnError(std::string_view source) override;

 private:
  std::expected<std::string, std::string> start(std::string_view op, const ProcessRequest& request);

  const DesktopState& state_;
  Journal& journal_;
  std::mt19937_64 random_{1};
};

}  // namespace tallowin
