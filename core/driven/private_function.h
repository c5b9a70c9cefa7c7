#pragma once

#include <functional>
#include <memory>
#include <mutex>
#include <string_view>
#include <utility>

#include "platform/private_functions.h"

// What calls of C functions need that are found by name.

namespace tallowin {

/// Finds the window server's private functions by name. Any thread.
class SymbolLookup {
 public:
  explicit SymbolLookup(DynamicLoader& loader) : loader_(loader) {}

  /// The address of a function: in the private framework by its primary name, then by its fallback name, then in the
  /// process's default namespace by both; null when it is nowhere. An empty fallback is none.
  [[nodiscard]] void* resolve(std::string_view primary, std::string_view fallback) {
    std::call_once(opened_, [this] {
      framework_ = loader_.open(private_functions::skyLight, DynamicLoader::lazy | DynamicLoader::noLoad);
      if (framework_ == nullptr) {
        framework_ = loader_.open(private_functions::skyLight, DynamicLoader::lazy);
      }
    });
    void* found = framework_ != nullptr ? resolveIn(framework_, primary, fallback) : nullptr;
    return found != nullptr ? found : resolveIn(nullptr, primary, fallback);
  }

  /// The same in the default namespace alone.
  template <typename Function>
  [[nodiscard]] Function resolveInDefaultNamespace(std::string_view name) const {
    return reinterpret_cast<Function>(loader_.symbol(nullptr, name));
  }

  [[nodiscard]] DynamicLoader& loader() const { return loader_; }

 private:
  [[nodiscard]] void* resolveIn(LibraryHandle library, std::string_view primary, std::string_view fallback) const {
    auto* found = loader_.symbol(library, primary);
    return found == nullptr && !fallback.empty() ? loader_.symbol(library, fallback) : found;
  }

  DynamicLoader& loader_;
  std::once_flag opened_;
  LibraryHandle framework_ = nullptr;
};

/// One private function: looked up at its first use, then remembered, also when it is missing. Any thread.
template <typename Function>
class PrivateFunction {
 public:
  /// In the private framework and in the default namespace, by either name.
  PrivateFunction(std::string_view primary, std::string_view fallback) : primary_(primary), fallback_(fallback) {}
  /// In the default namespace alone.
  explicit PrivateFunction(std::string_view name) : primary_(name) {}

  /// Null when the function is missing.
  [[nodiscard]] Function get(SymbolLookup& lookup) {
    std::call_once(done_, [&] {
      address_ = fallback_.empty() ? lookup.resolveInDefaultNamespace<Function>(primary_)
                                   : reinterpret_cast<Function>(lookup.resolve(primary_, fallback_));
    });
    return address_;
  }

 private:
  const std::string_view primary_;
  const std::string_view fallback_;
  std::once_flag done_;
  Function address_ = nullptr;
};

/// Owns one reference to a CoreFoundation object, or none.
class CFObject {
 public:
  CFObject(CoreFoundation& coreFoundation, CFTypeRef owned) : coreFoundation_(coreFoundation), object_(owned) {}
  CFObject(const CFObject&) = delete;
  CFObject& operator=(const CFObject&) = delete;
  ~CFObject() { coreFoundation_.CFRelease(object_); }

  [[nodiscard]] CFTypeRef get() const { return object_; }
  [[nodiscard]] explicit operator bool() const { return object_ != nullptr; }
  [[nodiscard]] PropertyList propertyList() const { return coreFoundation_.propertyList(object_); }

 private:
  CoreFoundation& coreFoundation_;
  const CFTypeRef object_;
};

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
