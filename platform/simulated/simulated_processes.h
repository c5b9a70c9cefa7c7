#pragma once

#include "platform/processes.h"
#include "platform/simulated/desktop_state.h"
#include "platform/simulated/journal.h"

namespace tallowin {

/// Child processes that are written down and not started; what they print, or that they are missing, is what the
/// scenario says. Main thread only.
class SimulatedProcesses : public Processes {
 public:
  SimulatedProcesses(const DesktopState& state, Journal& journal) : state_(state), journal_(journal) {}

  std::expected<void, std::string> launch(const ProcessRequest& request) override {
    const auto child = start("launch", request);
    return child ? std::expected<void, std::string>() : std::unexpected(child.error());
  }
  std::expected<std::string, std::string> run(const ProcessRequest& request) override {
    const auto child = start("run", request);
    return child ? std::expected<std::string, std::string>(child->output) : std::unexpected(child.error());
  }

 private:
  std::expected<SimulatedChild, std::string> start(std::string_view op, const ProcessRequest& request) {
    journal_.record(op, {{"executable", request.executable},
                         {"arguments", request.arguments},
                         {"addedEnvironment", request.addedEnvironment}});
    const auto found = state_.programs.find(request.executable);
    const auto child = found == state_.programs.end() ? SimulatedChild() : found->second;
    return child.missing ? std::expected<SimulatedChild, std::string>(std::unexpected("there is no such program"))
                         : child;
  }

  const DesktopState& state_;
  Journal& journal_;
};

}  // namespace tallowin
