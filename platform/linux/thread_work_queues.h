#pragma once

#include "platform/main_queue.h"

namespace tallowin {

/// Serial queues, each with a thread of its own at low priority.
class ThreadWorkQueues : public WorkQueues {
 public:
  std::unique_ptr<WorkQueue> make(const std::string& label) override;
};

}  // namespace tallowin
