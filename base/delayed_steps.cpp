#include "base/delayed_steps.h"

#include <utility>

namespace tallowin {

void DelayedSteps::after(Duration delay, std::function<void()> step) {
  const auto item = pending_.emplace(pending_.end());
  *item = mainQueue_.after(delay, [this, item, run = std::move(step)] {
    pending_.erase(item);
    run();
  });
}

}  // namespace tallowin
