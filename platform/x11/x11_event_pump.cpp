#include "platform/x11/x11_event_pump.h"

#include <utility>

namespace tallowin {

X11EventPump::X11EventPump(X11Connection& connection, MainQueue& queue, Descriptors& descriptors, Handler handler,
                           std::function<void()> onConnectionLost)
    : connection_(connection),
      queue_(queue),
      handler_(std::move(handler)),
      onConnectionLost_(std::move(onConnectionLost)),
      self_(std::make_shared<X11EventPump*>(this)) {
  watch_ = descriptors.watchReadable(xcb_get_file_descriptor(connection_.raw()), [this] { drain(); });
  connection_.setReadObserver([this] { drainSoon(); });
  connection_.flush();
}

X11EventPump::~X11EventPump() {
  connection_.setReadObserver([] {});
}

void X11EventPump::drainSoon() {
  if (draining_.exchange(true)) {
    return;
  }
  queue_.async([weak = std::weak_ptr(self_)] {
    if (const auto self = weak.lock()) {
      (*self)->draining_ = false;
      (*self)->drain();
    }
  });
}

void X11EventPump::drain() {
  while (const XcbPtr<xcb_generic_event_t> event{xcb_poll_for_event(connection_.raw())}) {
    handler_(*event);
  }
  if (!connection_.alive()) {
    lose();
  }
}

void X11EventPump::lose() {
  watch_.cancel();
  if (auto tell = std::exchange(onConnectionLost_, nullptr)) {
    queue_.async(std::move(tell));
  }
}

}  // namespace tallowin
