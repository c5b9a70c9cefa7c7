#pragma once

#include "platform/processes.h"

namespace tallowin {

/// Child processes by QProcess.
class QtProcesses : public Processes {
 public:
  std::expected<void, std::string> launch(const ProcessRequest& request) override;
  std::expected<std::string, std::string> run(const ProcessRequest& request) override;
};

}  // namespace tallowin
