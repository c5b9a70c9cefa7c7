#pragma once

#include "platform/processes.h"
#include "platform/simulated/journal.h"

namespace tallowin {

/// Child processes that are written down and not started: a program that runs to its end prints nothing. Main thread
/// only.
class SimulatedProcesses : public Processes {
 public:
  explicit SimulatedProcesses(Journal& journal) : journal_(journal) {}

  std::expected<void, std::string> launch(const ProcessRequest& request) override {
    record("launch", request);
    return {};
  }
  std::expected<std::string, std::string> run(const ProcessRequest& request) override {
    record("run", request);
    return "";
  }

 private:
  void record(std::string_view op, const ProcessRequest& request) {
    journal_.record(op, {{"executable", request.executable},
                         {"arguments", request.arguments},
                         {"addedEnvironment", request.addedEnvironment}});
  }

  Journal& journal_;
};

}  // namespace tallowin
