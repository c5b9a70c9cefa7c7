#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "platform/subscription.h"

namespace tallowin {

/// Durations of delays and timers. Fractions below a nanosecond are cut off.
using Duration = std::chrono::nanoseconds;

/// A piece of delayed work. Letting go of it, or assigning another to it, cancels the work if it has not run, also from
/// inside work of the same batch.
using WorkItem = Subscription;

/// The main thread's queue. Work runs in the order of its due times, and work of the same due time in the order in
/// which it was asked for.
class MainQueue {
 public:
  virtual ~MainQueue() = default;

  /// Runs `work` on the main thread soon, never inside this call. From any thread.
  virtual void async(std::function<void()> work) = 0;

  /// Runs `work` once on the main thread, `delay` from now, unless the returned item is let go of before. A delay of
  /// zero or less runs it as soon as the queue is reached. Main thread only.
  virtual WorkItem after(Duration delay, std::function<void()> work) = 0;

  /// Runs `work` every `interval`, the first time one interval from now, until the returned item is let go of. The
  /// platform may be late by up to `tolerance` to save wake-ups. Main thread only.
  virtual WorkItem every(Duration interval, Duration tolerance, std::function<void()> work) = 0;
};

/// Runs the main queue. Only the program's entry point and the command-line modes do.
class RunLoop {
 public:
  virtual ~RunLoop() = default;

  /// Runs until stop() and returns its status. Main thread, not from inside work.
  virtual int run() = 0;

  /// Runs for the given time, or until stop(). Main thread, not from inside work.
  virtual void runFor(Duration duration) = 0;

  /// Makes run() return `status` after the work that is running now. Main thread only.
  virtual void stop(int status) = 0;

  /// The status that stop() was called with, or nothing while nobody has.
  [[nodiscard]] virtual std::optional<int> stopped() const = 0;
};

/// A serial queue off the main thread.
class WorkQueue {
 public:
  /// Waits for the work that is running; work that has not begun is dropped.
  virtual ~WorkQueue() = default;

  /// Runs `work` on the queue's thread, `delay` from now, after the work that is due before it. From any thread.
  virtual void after(Duration delay, std::function<void()> work) = 0;
};

/// Makes serial queues.
class WorkQueues {
 public:
  virtual ~WorkQueues() = default;

  /// A new queue with a label for debuggers, at utility priority.
  virtual std::unique_ptr<WorkQueue> make(const std::string& label) = 0;
};

}  // namespace tallowin
