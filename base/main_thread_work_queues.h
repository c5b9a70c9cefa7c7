#pragma once

#include "platform/main_queue.h"

namespace tallowin {

/// Work queues whose work runs on the main queue, in its order, so that services of one thread need no locks. The main
/// queue must outlive the queues made here. Main thread only.
class MainThreadWorkQueues : public WorkQueues {
 public:
  explicit MainThreadWorkQueues(MainQueue& queue) : queue_(queue) {}

  std::unique_ptr<WorkQueue> make(const std::string& label) override;

 private:
  MainQueue& queue_;
};

}  // namespace tallowin
