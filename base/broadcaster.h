#pragma once

#include <algorithm>
#include <functional>
#include <memory>
#include <vector>

#include "platform/subscription.h"

namespace tallowin {

/// A list of observers that may change while it is being told: an observer that has ended is not told any more, one
/// that came during the telling is told the next time. Main thread only. May be destroyed before its subscriptions.
template <typename... Arguments>
class Broadcaster {
 public:
  using Observer = std::function<void(Arguments...)>;

  Subscription subscribe(Observer observer) {
    auto entry = std::make_shared<Entry>(Entry{std::move(observer)});
    std::erase_if(entries_, [](const auto& old) { return !old->wanted; });
    entries_.push_back(entry);
    return Subscription([entry] { entry->wanted = false; });
  }

  void tell(Arguments... arguments) const {
    const auto entries = entries_;
    for (const auto& entry : entries) {
      if (entry->wanted) {
        entry->observer(arguments...);
      }
    }
  }

 private:
  struct Entry {
    Observer observer;
    bool wanted = true;
  };

  // Shared between this list, a copy that is being told, and the subscription that ends the entry.
  std::vector<std::shared_ptr<Entry>> entries_;
};

}  // namespace tallowin
