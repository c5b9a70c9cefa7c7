#include "platform/qt/system_log.h"

#include <cstdio>
#include <string>
#include <syslog.h>
#include <unistd.h>

namespace tallowin {

namespace {

constexpr auto collectorSocket = "/dev/log";  // syslog(3)
constexpr auto untilNextLook = std::chrono::seconds(60);

}  // namespace

SystemLog::SystemLog(bool verbose) : verbose_(verbose) {
  ::openlog("tallowin", LOG_PID, LOG_USER);
}

SystemLog::~SystemLog() {
  ::closelog();
}

void SystemLog::write(Level level, std::string_view category, std::string_view message) {
  if (isTaken()) {
    const std::string line = "[com.quorvex.tallowin:" + std::string(category) + "] " + std::string(message);
    constexpr int priorities[] = {LOG_DEBUG, LOG_INFO, LOG_ERR};
    ::syslog(priorities[static_cast<std::size_t>(level)], "%s", line.c_str());
  }
  if (verbose_) {
    std::fprintf(stderr, "%s: %s\n", std::string(category).c_str(), std::string(message).c_str());
  }
}

bool SystemLog::isTaken() {
  const auto now = std::chrono::steady_clock::now();
  if (now >= nextLook_.load()) {
    taken_ = ::access(collectorSocket, W_OK) == 0;
    nextLook_ = now + untilNextLook;
  }
  return taken_;
}

}  // namespace tallowin
