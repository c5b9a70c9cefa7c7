#pragma once

#include "platform/log.h"

namespace tallowin {

/// The machine's log by syslog(3), which journals collect too. Each line begins with the subsystem and the category.
class SystemLog : public Log {
 public:
  /// With `verbose` every line goes to standard error as well.
  explicit SystemLog(bool verbose);
  ~SystemLog() override;
  SystemLog(const SystemLog&) = delete;
  SystemLog& operator=(const SystemLog&) = delete;

  void write(Level level, std::string_view category, std::string_view message) override;

 private:
  const bool verbose_;
};

}  // namespace tallowin
