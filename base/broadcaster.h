#pragma once

#include <algorithm>
#include <functional>
#include <memory>
#include <utility>
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

/// A value whose observers are told of every new one. Main thread only.
template <typename Value>
class Published {
 public:
  Published() = default;
  explicit Published(Value initial) : value_(std::move(initial)) {}
  Published(const Published&) = delete;
  Published& operator=(const Published&) = delete;

  [[nodiscard]] const Value& get() const { return value_; }

  /// Tells the observers that are told before the change, changes the value, and tells the others. Equal values are
  /// published too: whoever sets one decides whether anything changed.
  void set(Value value) {
    willChange_.tell(value);
    value_ = std::move(value);
    didChange_.tell(value_);
  }

  /// Calls `observer` with the value that is about to be published, while get() still answers the old one.
  Subscription observeWillChange(std::function<void(const Value&)> observer) {
    return willChange_.subscribe(std::move(observer));
  }

  /// Calls `observer` with the value that has been published.
  Subscription observeDidChange(std::function<void(const Value&)> observer) {
    return didChange_.subscribe(std::move(observer));
  }

 private:
  Value value_{};
  Broadcaster<const Value&> willChange_;
  Broadcaster<const Value&> didChange_;
};

}  // namespace tallowin
