#pragma once

#include <chrono>
#include <string>
#include <sys/types.h>

#include "tests/soak/random/scenario_run.h"

namespace tallowin {

/// A scenario that is judged in a process of its own, as it may crash or never end.
class IsolatedRun {
 public:
  /// `loud`: what the process prints is seen, such as what a sanitizer found.
  IsolatedRun(const std::string& scenarioJSON, bool twice, bool loud);
  IsolatedRun(const IsolatedRun&) = delete;
  IsolatedRun& operator=(const IsolatedRun&) = delete;
  ~IsolatedRun();

  /// Readable once there is a verdict.
  [[nodiscard]] int descriptor() const { return reader_; }
  [[nodiscard]] bool isLate() const { return std::chrono::steady_clock::now() > deadline_; }

  /// Waits for it; a process that is late is ended.
  Verdict verdict();

 private:
  int reader_ = -1;
  pid_t process_ = -1;
  std::chrono::steady_clock::time_point deadline_;
};

/// The verdict on one scenario.
Verdict judgeIsolated(const std::string& scenarioJSON, bool twice, bool loud);

}  // namespace tallowin
