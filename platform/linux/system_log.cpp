#include "platform/linux/system_log.h"

#include <cstdio>
#include <string>
#include <syslog.h>
#include <unistd.h>

#include "base/unicode.h"

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
  // Messages name what others have named; each stays on its line, and commands a terminal to do nothing.
  const auto text = printable(message);
  if (isTaken()) {
    const std::string line = "[com.quorvex.tallowin:" + std::string(category) + "] " + text;
    constexpr int priorities[] = {LOG_DEBUG, LOG_INFO, LOG_ERR};
    ::syslog(priorities[static_cast<std::size_t>(level)], "%s", line.c_str());
  }
  if (verbose_) {
    std::fprintf(stderr, "%s: %s\n", std::string(category).c_str(), text.c_str());
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
