#pragma once

#include <functional>
#include <memory>
#include <mutex>

namespace tallowin {

/// Holds the one receiver of calls that come from C without an argument of our own, from any thread. Such calls can
/// only find their receiver in a place of the whole process, so each kind of call has one static slot.
template <typename... Arguments>
class CallbackSlot {
 public:
  using Callback = std::function<void(Arguments...)>;

  /// Makes `callback` the receiver on behalf of `owner`, in place of whatever was.
  void set(const void* owner, Callback callback) {
    const std::lock_guard lock(mutex_);
    owner_ = owner;
    callback_ = std::make_shared<const Callback>(std::move(callback));
  }

  /// Forgets the receiver if it is still `owner`'s.
  void clear(const void* owner) {
    const std::lock_guard lock(mutex_);
    if (owner_ == owner) {
      owner_ = nullptr;
      callback_.reset();
    }
  }

  /// Calls the receiver, if there is one, outside the lock.
  void call(Arguments... arguments) {
    std::unique_lock lock(mutex_);
    const auto callback = callback_;
    lock.unlock();
    if (callback && *callback) {
      (*callback)(arguments...);
    }
  }

 private:
  std::mutex mutex_;
  const void* owner_ = nullptr;
  std::shared_ptr<const Callback> callback_;  // shared with calls that are under way on other threads
};

}  // namespace tallowin
