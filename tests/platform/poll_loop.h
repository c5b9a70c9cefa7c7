#pragma once

#include <algorithm>
#include <chrono>
#include <deque>
#include <functional>
#include <map>
#include <mutex>
#include <poll.h>
#include <sys/eventfd.h>
#include <unistd.h>
#include <utility>
#include <vector>

#include "platform/descriptors.h"
#include "platform/main_queue.h"

namespace tallowin {

/// A main queue and descriptor watches over poll(2), for tests that speak to a real server.
class PollLoop : public MainQueue, public Descriptors {
 public:
  using Time = std::chrono::steady_clock;

  PollLoop() : wake_(eventfd(0, EFD_NONBLOCK | EFD_CLOEXEC)) {}
  ~PollLoop() override { close(wake_); }
  PollLoop(const PollLoop&) = delete;
  PollLoop& operator=(const PollLoop&) = delete;

  void async(std::function<void()> work) override {
    const std::lock_guard lock(mutex_);
    queued_.push_back(std::move(work));
    eventfd_write(wake_, 1);
  }

  WorkItem after(Duration delay, std::function<void()> work) override {
    const int id = ++lastId_;
    timers_[id] = {Time::now() + delay, std::move(work)};
    return WorkItem([this, id] { timers_.erase(id); });
  }

  WorkItem every(Duration /*interval*/, Duration /*tolerance*/, std::function<void()> /*work*/) override { return {}; }

  Subscription watchReadable(int descriptor, std::function<void()> onReadable) override {
    watches_[descriptor] = std::move(onReadable);
    return Subscription([this, descriptor] { watches_.erase(descriptor); });
  }

  Subscription watchWritable(int descriptor, std::function<void()> onWritable) override {
    writers_[descriptor] = std::move(onWritable);
    return Subscription([this, descriptor] { writers_.erase(descriptor); });
  }

  /// Runs work until the condition holds. False when that takes longer than anything here ever should.
  bool runUntil(const std::function<bool()>& condition) {
    const auto end = Time::now() + std::chrono::minutes(1);
    while (!condition()) {
      if (Time::now() > end) {
        return false;
      }
      turn(20);
    }
    return true;
  }

  /// Runs everything that can run without waiting.
  void runReady() {
    while (turn(0)) {
    }
  }

  [[nodiscard]] bool hasTimers() const { return !timers_.empty(); }
  [[nodiscard]] std::size_t watchCount() const { return watches_.size(); }

 private:
  struct Timer {
    Time::time_point due;
    std::function<void()> work;
  };

  bool turn(int milliseconds) {
    std::vector<pollfd> descriptors{{wake_, POLLIN, 0}};
    for (const auto& [descriptor, work] : watches_) {
      descriptors.push_back({descriptor, POLLIN, 0});
    }
    for (const auto& [descriptor, work] : writers_) {
      descriptors.push_back({descriptor, POLLOUT, 0});
    }
    poll(descriptors.data(), descriptors.size(), milliseconds);
    bool ran = false;
    for (const auto& [descriptor, events, seen] : descriptors) {
      auto& watches = events == POLLOUT ? writers_ : watches_;
      if (const auto watch = watches.find(descriptor); seen != 0 && watch != watches.end()) {
        std::function<void()>(watch->second)();
        ran = true;
      }
    }
    ran = runQueued() || ran;
    return runTimers() || ran;  // each in every turn: queued work that queues more must not starve the timers
  }

  bool runQueued() {
    eventfd_t ignored = 0;
    eventfd_read(wake_, &ignored);
    std::deque<std::function<void()>> batch;
    {
      const std::lock_guard lock(mutex_);
      batch.swap(queued_);
    }
    std::ranges::for_each(batch, [](const auto& work) { work(); });
    return !batch.empty();
  }

  bool runTimers() {
    const auto due = std::ranges::find_if(timers_, [](const auto& entry) { return entry.second.due <= Time::now(); });
    if (due == timers_.end()) {
      return false;
    }
    const auto work = timers_.extract(due).mapped().work;
    work();
    return true;
  }

  const int wake_;
  std::map<int, std::function<void()>> watches_;
  std::map<int, std::function<void()>> writers_;
  std::map<int, Timer> timers_;
  int lastId_ = 0;

  std::mutex mutex_;
  std::deque<std::function<void()>> queued_;  ///< guarded by mutex_
};

}  // namespace tallowin
