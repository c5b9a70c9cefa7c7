#pragma once

#include <atomic>
#include <chrono>

#include "platform/log.h"

namespace tallowin {

/// The machine's log by syslog(3), which journals collect too. Each line begins with the subsystem and the category.
/// Where nothing takes the machine's log, which syslog(3) would find out anew for every line, that is found out once a
/// minute.
class SystemLog : public Log {
 public:
  /// With `verbose` every line goes to standard error as well.
  explicit SystemLog(bool verbose);
  ~SystemLog() override;
  SystemLog(const SystemLog&) = delete;
  SystemLog& operator=(const SystemLog&) = delete;

  void write(Level level, std::string_view category, std::string_view message) override;

 private:
  bool isTaken();

  const bool verbose_;
  std::atomic<bool> taken_ = false;
  std::atomic<std::chrono::steady_clock::time_point> nextLook_{};
};

}  // namespace tallowin
