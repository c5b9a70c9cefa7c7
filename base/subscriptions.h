#pragma once

#include <utility>
#include <vector>

#include "platform/subscription.h"

namespace tallowin {

/// Several subscriptions that last together. They end in the order in which they were added.
class Subscriptions {
 public:
  Subscriptions() = default;
  Subscriptions(const Subscriptions&) = delete;
  Subscriptions& operator=(const Subscriptions&) = delete;
  ~Subscriptions() { cancel(); }

  void add(Subscription subscription) { list_.push_back(std::move(subscription)); }

  /// Ends them all now.
  void cancel() {
    auto ending = std::exchange(list_, {});
    for (auto& subscription : ending) {
      subscription.cancel();
    }
  }

 private:
  std::vector<Subscription> list_;
};

}  // namespace tallowin
