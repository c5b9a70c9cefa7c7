#include "base/main_thread_work_queues.h"

#include <cstdint>
#include <map>
#include <utility>

namespace tallowin {

namespace {

class MainThreadWorkQueue : public WorkQueue {
 public:
  explicit MainThreadWorkQueue(MainQueue& queue) : queue_(queue) {}

  void after(Duration delay, std::function<void()> work) override {
    const auto number = asked_++;
    pending_[number] = queue_.after(delay, [this, number, work = std::move(work)] { run(number, work); });
  }

 private:
  // The entry goes first: the work may end this queue, and the item that holds the work with it.
  void run(std::uint64_t number, const std::function<void()>& work) {
    const auto performed = work;
    pending_.erase(number);
    performed();
  }

  MainQueue& queue_;
  std::uint64_t asked_ = 0;
  std::map<std::uint64_t, WorkItem> pending_;
};

}  // namespace

std::unique_ptr<WorkQueue> MainThreadWorkQueues::make(const std::string& /*label*/) {
  return std::make_unique<MainThreadWorkQueue>(queue_);
}

}  // namespace tallowin
