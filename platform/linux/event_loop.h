#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <vector>

#include "platform/descriptors.h"
#include "platform/main_queue.h"

struct epoll_event;

namespace tallowin {

/// The main thread's event loop, over epoll(7): its queue, its timers, and the descriptors that it waits for. The main
/// thread is the one that runs it. It sleeps while there is nothing to do; timers are due to the millisecond, rounded
/// up. Making it throws std::system_error when the process can have no more descriptors.
class EventLoop : public MainQueue, public RunLoop, public Descriptors {
 public:
  EventLoop();

  void async(std::function<void()> work) override;
  WorkItem after(Duration delay, std::function<void()> work) override;
  WorkItem every(Duration interval, Duration tolerance, std::function<void()> work) override;

  int run() override;
  void runFor(Duration duration) override;
  void stop(int status) override { stopped_ = status; }
  [[nodiscard]] std::optional<int> stopped() const override { return stopped_; }

  Subscription watchReadable(int descriptor, std::function<void()> onReadable) override;
  Subscription watchWritable(int descriptor, std::function<void()> onWritable) override;

  /// How many timers have not run or been let go of, repeating ones included, and how many watches there are.
  [[nodiscard]] std::size_t timerCount() const { return timers_.size(); }
  [[nodiscard]] std::size_t watchCount() const { return watches_.size(); }

 protected:
  /// Waits until there is something to do, but not longer than `atMost`, and does it. Whether anything was done.
  bool turn(Duration atMost);

 private:
  using Time = std::chrono::steady_clock::time_point;
  using TimerKey = std::pair<Time, std::uint64_t>;  ///< when it is due, and its number
  using WatchKey = std::pair<int, std::uint64_t>;   ///< its descriptor, and its number
  struct Timer;
  struct Watch;

  WorkItem schedule(Timer timer, Duration delay);
  Subscription watch(int descriptor, Watch watch);
  void updateInterest(int descriptor);
  int timeToWait(Duration atMost);
  bool tellWatches(const epoll_event& event, std::uint64_t newest);
  bool runArrived();
  bool runDueTimers();

  const OwnedDescriptor epoll_;
  std::optional<int> stopped_;
  std::uint64_t lastNumber_ = 0;  ///< of timers and watches, which are numbered in the order of being asked for
  // Owned by the maps and by the call that is running.
  std::map<TimerKey, std::shared_ptr<Timer>> timers_;
  std::map<WatchKey, std::shared_ptr<const Watch>> watches_;

  // What other threads use too, guarded by the mutex. Only a loop that may be asleep is woken, by eventfd(2).
  const OwnedDescriptor wakeUp_;
  std::mutex mutex_;
  std::vector<std::function<void()>> arrived_;
  bool mayBeAsleep_ = false;
};

/// Serial queues, each with a thread of its own at low priority.
class ThreadWorkQueues : public WorkQueues {
 public:
  std::unique_ptr<WorkQueue> make(const std::string& label) override;
};

}  // namespace tallowin
