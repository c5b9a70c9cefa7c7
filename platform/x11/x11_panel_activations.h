#pragma once

#include <cstdint>
#include <functional>
#include <utility>
#include <xcb/xcb.h>

#include "base/broadcaster.h"
#include "platform/panel_activations.h"
#include "platform/x11/x11_connection.h"

namespace tallowin {

/// Requests to activate a window that come from no application itself (EWMH, _NET_ACTIVE_WINDOW: source indication 2, a
/// pager, or 0, an old program that does not say), as they pass through the root window. Main thread only.
class X11PanelActivations : public PanelActivations {
 public:
  explicit X11PanelActivations(X11Connection& connection) : connection_(connection) {}

  Subscription observe(std::function<void()> observer) override {
    connection_.selectEvents(connection_.root(), XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY);
    connection_.flush();
    return observers_.subscribe(std::move(observer));
  }

  void handle(const xcb_generic_event_t& event) {
    if (x11EventType(event) != XCB_CLIENT_MESSAGE) {
      return;
    }
    const auto message = x11EventAs<xcb_client_message_event_t>(event);
    if (message.type == connection_.atom(X11Atom::netActiveWindow) && message.data.data32[0] != applicationSource) {
      observers_.tell();
    }
  }

 private:
  static constexpr std::uint32_t applicationSource = 1;

  X11Connection& connection_;
  Broadcaster<> observers_;
};

}  // namespace tallowin
