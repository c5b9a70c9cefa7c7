#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <utility>

#include "base/main_thread_work_queues.h"
#include "platform/clock.h"
#include "platform/main_queue.h"
#include "platform/simulated/time_zone.h"

namespace tallowin {

/// When the simulation starts, as the simulated machine sees it.
struct ClockSettings {
  Date start = std::chrono::sys_days{std::chrono::year{2026} / 3 / 2} + std::chrono::hours{9};
  TimeZone timeZone;
  Duration uptime = std::chrono::hours{1};  ///< how long the machine has been up by then
};

/// The simulated machine's clock, on top of the time that has passed since the start. Main thread only.
class SimulatedClock : public Clock {
 public:
  explicit SimulatedClock(ClockSettings settings = {}) : settings_(settings), wallOffset_(Duration::zero()) {}

  /// How much time has passed since the start; never goes back.
  [[nodiscard]] virtual Duration elapsed() const = 0;

  [[nodiscard]] Date now() const override;
  [[nodiscard]] std::uint64_t machAbsoluteTime() const override;
  [[nodiscard]] std::chrono::nanoseconds systemUptime() const override;
  [[nodiscard]] std::chrono::seconds localOffset(Date date) const override;
  [[nodiscard]] CalendarDay localDay(Date date) const override;

  /// Sets the wall clock forward, or back when negative. Nothing else notices. In all it goes no further than 60 years
  /// either way.
  void jumpWallClock(Duration by);

 private:
  const ClockSettings settings_;
  Duration wallOffset_;
};

/// The simulated machine's clock where time passes as it really does, starting when it is made.
class RealTimeSimulatedClock : public SimulatedClock {
 public:
  using SimulatedClock::SimulatedClock;
  [[nodiscard]] Duration elapsed() const override { return std::chrono::steady_clock::now() - began_; }

 private:
  const std::chrono::steady_clock::time_point began_ = std::chrono::steady_clock::now();
};

/// Time that passes only when it is told to, in an instant, and always in the same order: by due time, then in the
/// order of asking. One thread only, which everything here belongs to, work queues included. It must outlive what it
/// handed out, except work items.
class VirtualTime : public MainQueue, public RunLoop, public WorkQueues, public SimulatedClock {
 public:
  explicit VirtualTime(ClockSettings settings = {});

  void async(std::function<void()> work) override;
  WorkItem after(Duration delay, std::function<void()> work) override;
  /// Timers are never late. An interval below a millisecond counts as one, so that time gets on.
  WorkItem every(Duration interval, Duration tolerance, std::function<void()> work) override;

  /// Runs until stop(), until the end, or until nothing is left to do. Without stop() the status is 0.
  int run() override;
  /// Runs what falls due within `duration` and advances by exactly that, the end notwithstanding; less on stop().
  void runFor(Duration duration) override;
  void stop(int status) override;
  [[nodiscard]] std::optional<int> stopped() const override { return stopped_; }

  std::unique_ptr<WorkQueue> make(const std::string& label) override { return workQueues_.make(label); }

  [[nodiscard]] Duration elapsed() const override { return elapsed_; }

  /// runFor() under the name that reads best in a test.
  void advance(Duration duration) { runFor(duration); }

  /// How many pieces of work have been asked for so far, to tell work from idling.
  [[nodiscard]] std::uint64_t asked() const { return asked_; }

  /// Makes run() end at this time after the start, after the work that is due at that very time.
  void endAt(Duration end) { end_ = end; }

 private:
  using Key = std::pair<Duration, std::uint64_t>;  ///< due time, then the order of asking
  struct Work {
    std::function<void()> perform;
    std::optional<Duration> interval;  ///< of a repeating timer
    Key key;                           ///< where it stands in the agenda
    bool wanted = true;
  };
  using Agenda = std::map<Key, std::shared_ptr<Work>>;

  WorkItem schedule(Duration delay, std::function<void()> perform, std::optional<Duration> interval);
  void enter(Duration due, const std::shared_ptr<Work>& work);
  [[nodiscard]] Duration timeAfter(Duration delay) const;
  bool runNextUntil(Duration limit);

  Duration elapsed_ = Duration::zero();
  std::optional<Duration> end_;
  std::optional<int> stopped_;
  std::uint64_t asked_ = 0;
  // Work is owned by the agenda and, while it runs, by runNextUntil(), so that it can be cancelled from inside itself.
  // Work items hold the agenda weakly, to see whether it still exists.
  std::shared_ptr<Agenda> agenda_ = std::make_shared<Agenda>();
  MainThreadWorkQueues workQueues_;
};

}  // namespace tallowin
