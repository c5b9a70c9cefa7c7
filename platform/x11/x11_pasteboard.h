#pragma once

#include <string>
#include <vector>
#include <xcb/xcb.h>

#include "platform/pasteboard.h"
#include "platform/x11/x11_connection.h"

namespace tallowin {

/// The CLIPBOARD selection (ICCCM, Peer-to-Peer Communication by Means of Selections). The text is there as long as
/// this object and until another program copies something. Main thread only.
class X11Pasteboard : public Pasteboard {
 public:
  explicit X11Pasteboard(X11Connection& connection) : connection_(connection) {}
  ~X11Pasteboard() override;
  X11Pasteboard(const X11Pasteboard&) = delete;
  X11Pasteboard& operator=(const X11Pasteboard&) = delete;

  /// False too for a text that does not fit into one request.
  bool setString(std::string_view text) override;

  /// Takes an event of the server.
  void handle(const xcb_generic_event_t& event);

 private:
  void answer(const xcb_selection_request_event_t& request);
  [[nodiscard]] bool convert(xcb_window_t requestor, xcb_atom_t property, xcb_atom_t target);
  [[nodiscard]] bool convertMultiple(xcb_window_t requestor, xcb_atom_t property);
  void put(xcb_window_t requestor, xcb_atom_t property, xcb_atom_t type, const std::vector<std::uint32_t>& values);

  X11Connection& connection_;
  X11ServerTime serverTime_;
  xcb_window_t window_ = XCB_WINDOW_NONE;  ///< the owner of the selection; made when first needed
  xcb_timestamp_t ownedSince_ = XCB_CURRENT_TIME;
  std::string text_;
};

}  // namespace tallowin
