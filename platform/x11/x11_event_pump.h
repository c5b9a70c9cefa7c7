#pragma once

#include <atomic>
#include <functional>
#include <memory>
#include <xcb/xcb.h>

#include "platform/descriptors.h"
#include "platform/main_queue.h"
#include "platform/x11/x11_connection.h"

namespace tallowin {

/// Brings the server's events to the main thread, and notices when the server is gone. Constructed and destroyed on the
/// main thread, outside the handler.
class X11EventPump {
 public:
  using Handler = std::function<void(const xcb_generic_event_t&)>;

  /// `handler` runs on the main thread for every event, errors of unchecked requests included (response_type 0).
  /// `onConnectionLost` runs once, from the main queue, when the server is gone; no event comes after that.
  X11EventPump(X11Connection& connection, MainQueue& queue, Descriptors& descriptors, Handler handler,
               std::function<void()> onConnectionLost);
  ~X11EventPump();
  X11EventPump(const X11EventPump&) = delete;
  X11EventPump& operator=(const X11EventPump&) = delete;

 private:
  void drain();
  void drainSoon();
  void lose();

  X11Connection& connection_;
  MainQueue& queue_;
  const Handler handler_;

  // Main thread only.
  std::function<void()> onConnectionLost_;
  Subscription watch_;

  // Shared with whoever takes replies.
  std::atomic<bool> draining_ = false;  ///< a drain waits in the queue
  /// Owned by the pump, and by a queued drain while it runs; a drain that finds it gone does nothing.
  std::shared_ptr<X11EventPump*> self_;
};

}  // namespace tallowin
