#pragma once

#include <functional>

#include "platform/subscription.h"

namespace tallowin {

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
