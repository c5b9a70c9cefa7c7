#include "platform/linux/thread_work_queues.h"

#include <condition_variable>
#include <map>
#include <mutex>
#include <pthread.h>
#include <sys/resource.h>
#include <thread>
#include <unistd.h>

namespace tallowin {

namespace {

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

std::unique_ptr<WorkQueue> ThreadWorkQueues::make(const std::string& label) {
  return std::make_unique<ThreadWorkQueue>(label);
}

}  // namespace tallowin
