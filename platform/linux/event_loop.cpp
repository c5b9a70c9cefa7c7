#include "platform/linux/event_loop.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <condition_variable>
#include <limits>
#include <pthread.h>
#include <sys/epoll.h>
#include <sys/eventfd.h>
#include <sys/resource.h>
#include <system_error>
#include <thread>
#include <unistd.h>

namespace tallowin {

namespace {

using SteadyTime = std::chrono::steady_clock;

/// Later than anybody waits, and early enough to be reckoned with.
constexpr Duration longestDelay = std::chrono::years(10);

OwnedDescriptor checked(int descriptor) {
  if (descriptor < 0) {
    throw std::system_error(errno, std::generic_category(), "the event loop");
  }
  return OwnedDescriptor(descriptor);
}

using SteadyClock = std::chrono::steady_clock;

class ThreadWorkQueue : public WorkQueue {
 public:
  explicit ThreadWorkQueue(const std::string& label) : thread_([this, label] { run(label); }) {}

  ~ThreadWorkQueue() override {
    {
      const std::lock_guard lock(mutex_);
      ending_ = true;
    }
    changed_.notify_one();
    thread_.join();
  }

  void after(Duration delay, std::function<void()> work) override {
    {
      const std::lock_guard lock(mutex_);
      // Equal keys keep the order of being inserted.
      agenda_.emplace(SteadyClock::now() + delay, std::move(work));
    }
    changed_.notify_one();
  }

 private:
  void run(const std::string& label) {
    constexpr std::size_t longestName = 15;  // pthread_setname_np(3)
    constexpr int lowPriority = 5;
    ::pthread_setname_np(::pthread_self(), label.substr(0, longestName).c_str());
    ::setpriority(PRIO_PROCESS, static_cast<id_t>(::gettid()), lowPriority);
    std::unique_lock lock(mutex_);
    while (!ending_) {
      if (agenda_.empty()) {
        changed_.wait(lock);
      } else if (const auto due = agenda_.begin()->first; due > SteadyClock::now()) {
        changed_.wait_until(lock, due);
      } else {
        const auto work = std::move(agenda_.begin()->second);
        agenda_.erase(agenda_.begin());
        lock.unlock();
        work();
        lock.lock();
      }
    }
  }

  std::mutex mutex_;
  std::condition_variable changed_;
  std::multimap<SteadyClock::time_point, std::function<void()>> agenda_;
  bool ending_ = false;
  std::thread thread_;  // last, since it uses the others from its start
};

}  // namespace

struct EventLoop::Timer {
  std::function<void()> work;
  std::optional<Duration> interval{};  ///< of a timer that repeats
  Duration tolerance{};
  TimerKey key{};
};

struct EventLoop::Watch {
  std::uint32_t event;  ///< EPOLLIN or EPOLLOUT
  std::function<void()> work;
};

EventLoop::EventLoop()
    : epoll_(checked(::epoll_create1(EPOLL_CLOEXEC))), wakeUp_(checked(::eventfd(0, EFD_NONBLOCK | EFD_CLOEXEC))) {
  epoll_event event{.events = EPOLLIN, .data = {.fd = wakeUp_.get()}};
  ::epoll_ctl(epoll_.get(), EPOLL_CTL_ADD, wakeUp_.get(), &event);
}

void EventLoop::async(std::function<void()> work) {
  const std::lock_guard lock(mutex_);
  arrived_.push_back(std::move(work));
  if (std::exchange(mayBeAsleep_, false)) {
    ::eventfd_write(wakeUp_.get(), 1);
  }
}

WorkItem EventLoop::after(Duration delay, std::function<void()> work) {
  return schedule({.work = std::move(work)}, delay);
}

WorkItem EventLoop::every(Duration interval, Duration tolerance, std::function<void()> work) {
  return schedule({.work = std::move(work), .interval = interval, .tolerance = tolerance}, interval);
}

/// The item does not keep the timer: what the work holds goes when it has run.
WorkItem EventLoop::schedule(Timer timer, Duration delay) {
  timer.key = {SteadyTime::now() + std::clamp(delay, Duration::zero(), longestDelay), ++lastNumber_};
  const auto kept = std::make_shared<Timer>(std::move(timer));
  timers_.emplace(kept->key, kept);
  return WorkItem([this, timer = std::weak_ptr(kept)] {
    if (const auto found = timer.lock()) {
      timers_.erase(found->key);
    }
  });
}

int EventLoop::run() {
  while (!stopped_) {
    turn(longestDelay);
  }
  return *stopped_;
}

void EventLoop::runFor(Duration duration) {
  bool isOver = false;
  const auto end = after(duration, [&isOver] { isOver = true; });
  while (!isOver && !stopped_) {
    turn(longestDelay);
  }
}

Subscription EventLoop::watchReadable(int descriptor, std::function<void()> onReadable) {
  return watch(descriptor, {EPOLLIN, std::move(onReadable)});
}

Subscription EventLoop::watchWritable(int descriptor, std::function<void()> onWritable) {
  return watch(descriptor, {EPOLLOUT, std::move(onWritable)});
}

Subscription EventLoop::watch(int descriptor, Watch watch) {
  const WatchKey key{descriptor, ++lastNumber_};
  const auto kept = std::make_shared<const Watch>(std::move(watch));
  watches_.emplace(key, kept);
  updateInterest(descriptor);
  return Subscription([this, key, watch = std::weak_ptr(kept)] {
    if (!watch.expired()) {
      watches_.erase(key);
      updateInterest(key.first);
    }
  });
}

/// epoll(7) takes each descriptor once, with everything that it is watched for.
void EventLoop::updateInterest(int descriptor) {
  epoll_event wanted{.events = 0, .data = {.fd = descriptor}};
  for (auto at = watches_.lower_bound({descriptor, 0}); at != watches_.end() && at->first.first == descriptor; ++at) {
    wanted.events |= at->second->event;
  }
  if (wanted.events == 0) {
    ::epoll_ctl(epoll_.get(), EPOLL_CTL_DEL, descriptor, nullptr);
  } else if (::epoll_ctl(epoll_.get(), EPOLL_CTL_MOD, descriptor, &wanted) != 0) {
    ::epoll_ctl(epoll_.get(), EPOLL_CTL_ADD, descriptor, &wanted);
  }
}

bool EventLoop::turn(Duration atMost) {
  std::array<epoll_event, 16> events{};
  const int count =
      ::epoll_wait(epoll_.get(), events.data(), static_cast<int>(events.size()), timeToWait(atMost));  // may be -1
  {
    const std::lock_guard lock(mutex_);
    mayBeAsleep_ = false;
  }
  // A watch that begins meanwhile may be of another file under the same number.
  const auto newest = lastNumber_;
  bool ran = false;
  for (int i = 0; i < count; ++i) {
    ran = tellWatches(events[static_cast<std::size_t>(i)], newest) || ran;
  }
  ran = runArrived() || ran;
  return runDueTimers() || ran;
}

/// In milliseconds, until something has to be done; none while work waits. From here on other threads wake the loop.
int EventLoop::timeToWait(Duration atMost) {
  {
    const std::lock_guard lock(mutex_);
    mayBeAsleep_ = arrived_.empty();
    if (!mayBeAsleep_) {
      return 0;
    }
  }
  const auto now = SteadyTime::now();
  auto end = now + atMost;
  for (const auto& [key, timer] : timers_) {
    if (key.first >= end) {
      break;
    }
    end = std::min(end, key.first + timer->tolerance);
  }
  const auto milliseconds = std::chrono::ceil<std::chrono::milliseconds>(end - now).count();
  return static_cast<int>(std::clamp<std::int64_t>(milliseconds, 0, std::numeric_limits<int>::max()));
}

bool EventLoop::tellWatches(const epoll_event& event, std::uint64_t newest) {
  const int descriptor = event.data.fd;
  if (descriptor == wakeUp_.get()) {
    eventfd_t ignored = 0;
    ::eventfd_read(descriptor, &ignored);
  }
  bool told = false;
  for (auto at = watches_.lower_bound({descriptor, 0});
       at != watches_.end() && at->first <= WatchKey{descriptor, newest} && !stopped_;) {
    const auto [key, watch] = *at;
    if ((event.events & (watch->event | EPOLLERR | EPOLLHUP)) != 0) {
      watch->work();
      told = true;
    }
    at = watches_.upper_bound(key);
  }
  return told;
}

/// What arrives meanwhile waits for the next turn.
bool EventLoop::runArrived() {
  std::vector<std::function<void()>> batch;
  {
    const std::lock_guard lock(mutex_);
    batch.swap(arrived_);
  }
  for (auto& work : batch) {
    if (!stopped_) {
      std::exchange(work, nullptr)();
    }
  }
  return !batch.empty();
}

/// What is asked for meanwhile waits for the next turn.
bool EventLoop::runDueTimers() {
  const TimerKey last{SteadyTime::now(), lastNumber_};
  bool ran = false;
  while (!stopped_ && !timers_.empty() && timers_.begin()->first <= last) {
    const auto timer = timers_.extract(timers_.begin()).mapped();
    if (timer->interval) {  // again, without those that are over already
      const auto next = timer->key.first + *timer->interval;
      timer->key = {next > last.first ? next : last.first + *timer->interval, ++lastNumber_};
      timers_.emplace(timer->key, timer);
    }
    timer->work();
    ran = true;
  }
  return ran;
}

std::unique_ptr<WorkQueue> ThreadWorkQueues::make(const std::string& label) {
  return std::make_unique<ThreadWorkQueue>(label);
}

}  // namespace tallowin
