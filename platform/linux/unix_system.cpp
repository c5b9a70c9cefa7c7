#include "platform/linux/unix_system.h"

#include <csignal>
#include <cstdio>
#include <ctime>
#include <memory>
#include <string>
#include <sys/random.h>
#include <sys/signalfd.h>
#include <sys/utsname.h>
#include <syslog.h>
#include <unistd.h>

#include "base/unicode.h"

namespace tallowin {

namespace {

utsname kernel() {
  utsname names{};
  ::uname(&names);
  return names;
}

std::tm localTime(Date date) {
  const std::time_t seconds = std::chrono::system_clock::to_time_t(date);
  std::tm local{};
  ::tzset();
  ::localtime_r(&seconds, &local);
  return local;
}

constexpr auto collectorSocket = "/dev/log";  // syslog(3)
constexpr auto untilNextLook = std::chrono::seconds(60);

sigset_t terminationSignals() {
  sigset_t signals;
  sigemptyset(&signals);
  for (const int signal : {SIGTERM, SIGINT, SIGHUP}) {
    sigaddset(&signals, signal);
  }
  return signals;
}

}  // namespace

OperatingSystemVersion UnixSystem::operatingSystemVersion() {
  OperatingSystemVersion version;
  std::sscanf(kernel().release, "%d.%d.%d", &version.major, &version.minor, &version.patch);
  return version;
}

std::string UnixSystem::operatingSystemName() {
  return kernel().sysname;
}

std::string UnixSystem::operatingSystemVersionString() {
  return kernel().release;
}

std::uint64_t UnixSystem::randomBits() {
  std::uint64_t bits = 0;
  while (::getrandom(&bits, sizeof bits, 0) != sizeof bits) {
  }
  return bits;
}

ProcessID UnixSystem::processIdentifier() {
  return ::getpid();
}

void UnixSystem::terminate(int status) {
  ::_exit(status);
}

PropertyList UnixSystem::CGSessionCopyCurrentDictionary() {
  return PropertyList::object();
}

Date SystemClock::now() const {
  return std::chrono::system_clock::now();
}

std::uint64_t SystemClock::machAbsoluteTime() const {
  return static_cast<std::uint64_t>(std::chrono::steady_clock::now().time_since_epoch().count());
}

std::chrono::nanoseconds SystemClock::systemUptime() const {
  timespec time{};
  ::clock_gettime(CLOCK_BOOTTIME, &time);
  return std::chrono::seconds(time.tv_sec) + std::chrono::nanoseconds(time.tv_nsec);
}

std::chrono::seconds SystemClock::localOffset(Date date) const {
  return std::chrono::seconds(localTime(date).tm_gmtoff);
}

CalendarDay SystemClock::localDay(Date date) const {
  const auto local = localTime(date);
  constexpr int firstYear = 1900;
  return {firstYear + local.tm_year, local.tm_mon + 1, local.tm_mday};
}

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

Subscription onTerminationSignal(Descriptors& descriptors, std::function<void(int signal)> onSignal) {
  const sigset_t signals = terminationSignals();
  const int descriptor = ::signalfd(-1, &signals, SFD_NONBLOCK | SFD_CLOEXEC);
  if (descriptor < 0) {
    return {};
  }
  ::pthread_sigmask(SIG_BLOCK, &signals, nullptr);
  // Owned by the subscription alone; a function object has to be copyable.
  auto watch = std::make_shared<Subscription>(
      descriptors.watchReadable(descriptor, [descriptor, onSignal = std::move(onSignal)] {
        signalfd_siginfo info{};
        if (::read(descriptor, &info, sizeof info) == sizeof info) {
          onSignal(static_cast<int>(info.ssi_signo));
        }
      }));
  return Subscription([descriptor, watch, signals] {
    watch->cancel();
    ::close(descriptor);
    ::pthread_sigmask(SIG_UNBLOCK, &signals, nullptr);
  });
}

}  // namespace tallowin
