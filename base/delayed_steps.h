#pragma once

#include <functional>
#include <list>
#include <utility>

#include "platform/main_queue.h"

namespace tallowin {

/// The delayed steps of chains of which several may be under way. Steps that have not run when it is destroyed never
/// do. Main thread only.
class DelayedSteps {
 public:
  explicit DelayedSteps(MainQueue& mainQueue) : mainQueue_(mainQueue) {}
  DelayedSteps(const DelayedSteps&) = delete;
  DelayedSteps& operator=(const DelayedSteps&) = delete;

  /// Runs `step` on the main thread, `delay` from now. The step may destroy this object.
  void after(Duration delay, std::function<void()> step) {
    const auto item = pending_.emplace(pending_.end());
    *item = mainQueue_.after(delay, [this, item, run = std::move(step)] {
      pending_.erase(item);
      run();
    });
  }

 private:
  MainQueue& mainQueue_;
  std::list<WorkItem> pending_;
};

}  // namespace tallowin
