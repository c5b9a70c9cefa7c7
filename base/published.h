#pragma once

#include <functional>
#include <utility>

#include "base/broadcaster.h"

namespace tallowin {

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
