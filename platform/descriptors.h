#pragma once

#include <functional>
#include <unistd.h>
#include <utility>

#include "platform/subscription.h"

namespace tallowin {

/// A file descriptor that is closed when its owner goes; negative for none.
class OwnedDescriptor {
 public:
  OwnedDescriptor() = default;
  explicit OwnedDescriptor(int descriptor) : descriptor_(descriptor) {}
  OwnedDescriptor(OwnedDescriptor&& other) noexcept : descriptor_(std::exchange(other.descriptor_, -1)) {}
  OwnedDescriptor& operator=(OwnedDescriptor&& other) noexcept {
    std::swap(descriptor_, other.descriptor_);
    return *this;
  }
  OwnedDescriptor(const OwnedDescriptor&) = delete;
  OwnedDescriptor& operator=(const OwnedDescriptor&) = delete;
  ~OwnedDescriptor() {
    if (descriptor_ >= 0) {
      ::close(descriptor_);
    }
  }

  [[nodiscard]] int get() const { return descriptor_; }
  /// Leaves it to the caller to close it.
  [[nodiscard]] int release() { return std::exchange(descriptor_, -1); }
  [[nodiscard]] explicit operator bool() const { return descriptor_ >= 0; }

 private:
  int descriptor_ = -1;
};

/// Waits for file descriptors on the main thread, so that the bindings to sockets need not know the event loop.
class Descriptors {
 public:
  virtual ~Descriptors() = default;

  /// Runs `onReadable` on the main thread whenever `descriptor` has something to read, its end included, until the
  /// subscription is let go of. The descriptor must stay open that long. Main thread only.
  virtual Subscription watchReadable(int descriptor, std::function<void()> onReadable) = 0;

  /// The same whenever something can be written to it.
  virtual Subscription watchWritable(int descriptor, std::function<void()> onWritable) = 0;
};

}  // namespace tallowin
