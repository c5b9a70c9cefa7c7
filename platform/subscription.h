#pragma once

#include <functional>
#include <memory>
#include <utility>

namespace tallowin {

/// Something that lasts as long as it is kept: a registration with an observer list, a watch, a pending work item.
/// Letting go of it, or assigning another one to it, ends it, also from inside the call that it registered.
class [[nodiscard]] Subscription {
 public:
  Subscription() = default;
  /// `end` runs once, when the subscription ends.
  explicit Subscription(std::function<void()> end) : end_(std::move(end)) {}
  Subscription(Subscription&& other) noexcept : end_(std::exchange(other.end_, nullptr)) {}
  Subscription& operator=(Subscription&& other) noexcept {
    if (this != &other) {
      cancel();
      end_ = std::exchange(other.end_, nullptr);
    }
    return *this;
  }
  Subscription(const Subscription&) = delete;
  Subscription& operator=(const Subscription&) = delete;
  ~Subscription() { cancel(); }

  /// Ends it now. Doing so twice is harmless.
  void cancel() {
    if (auto end = std::exchange(end_, nullptr)) {
      end();
    }
  }

  /// Whether there is something that has not been ended by this object. Work that has already run still counts.
  [[nodiscard]] explicit operator bool() const { return static_cast<bool>(end_); }

 private:
  std::function<void()> end_;
};

}  // namespace tallowin
