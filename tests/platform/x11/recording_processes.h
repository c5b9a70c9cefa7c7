#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "platform/processes.h"

namespace tallowin {

/// Takes down what would be started.
class RecordingProcesses : public Processes {
 public:
  std::expected<void, std::string> launch(const ProcessRequest& request) override {
    auto line = std::filesystem::path(request.executable).filename().string();
    for (const auto& argument : request.arguments) {
      line += ' ' + argument;
    }
    launched.push_back(line);
    return {};
  }
  std::expected<std::string, std::string> run(const ProcessRequest& /*request*/) override { return ""; }

  std::vector<std::string> launched;
};

}  // namespace tallowin
