#pragma once

#include <atomic>
#include <chrono>
#include <functional>

#include "platform/clock.h"
#include "platform/descriptors.h"
#include "platform/log.h"
#include "platform/pinned.h"
#include "platform/system.h"

namespace tallowin {

/// This process on a Unix machine. The version is the kernel's; whether the screen is locked is not known.
class UnixSystem : public System {
 public:
  OperatingSystemVersion operatingSystemVersion() override;
  std::string operatingSystemName() override;
  std::string operatingSystemVersionString() override;
  ProcessID processIdentifier() override;
  std::uint64_t randomBits() override;
  void terminate(int status) override;
  PropertyList CGSessionCopyCurrentDictionary() override;
};

/// The machine's clocks.
class SystemClock : public Clock {
 public:
  [[nodiscard]] Date now() const override;
  [[nodiscard]] std::uint64_t machAbsoluteTime() const override;
  [[nodiscard]] std::chrono::nanoseconds systemUptime() const override;
  [[nodiscard]] std::chrono::seconds localOffset(Date date) const override;
  [[nodiscard]] CalendarDay localDay(Date date) const override;
};

/// The machine's log by syslog(3), which journals collect too. Each line begins with the subsystem and the category.
/// Where nothing takes the machine's log, which syslog(3) would find out anew for every line, that is found out once a
/// minute.
class SystemLog : public Log, Pinned {
 public:
  /// With `verbose` every line goes to standard error as well.
  explicit SystemLog(bool verbose);
  ~SystemLog() override;

  void write(Level level, std::string_view category, std::string_view message) override;

 private:
  bool isTaken();

  const bool verbose_;
  std::atomic<bool> taken_ = false;
  std::atomic<std::chrono::steady_clock::time_point> nextLook_{};
};

/// Runs `onSignal` on the main thread, with the signal's number, when the process is asked to end by SIGTERM, SIGINT or
/// SIGHUP, until the subscription is let go of. Threads that are started later do not take these signals.
[[nodiscard]] Subscription onTerminationSignal(Descriptors& descriptors, std::function<void(int signal)> onSignal);

}  // namespace tallowin
