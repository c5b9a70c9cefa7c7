#pragma once

#include <functional>
#include <map>
#include <mutex>
#include <set>
#include <string_view>
#include <thread>
#include <vector>
#include <xcb/xcb.h>

#include "tests/platform/x11/scripted_window_manager.h"

namespace tallowin {

/// A window manager that does at once what it is asked for, on a thread of its own, except what it is told to ignore.
/// Each client gets a frame with a title bar of 20 pixels and borders of 2, and lies `depth` windows deep in it.
class ObedientWindowManager : private ScriptedWindowManager {
 public:
  explicit ObedientWindowManager(std::uint32_t desktops, std::set<X11Atom> ignored = {}, int depth = 1,
                                 std::string_view name = "Openbox")
      : ScriptedWindowManager(name, XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY),
        ignored_(std::move(ignored)),
        depth_(depth) {
    setDesktops(desktops, 0);
    thread_ = std::thread([this] { run(); });
  }

  ~ObedientWindowManager() {
    if (const auto other = X11Connection::open()) {
      (*other)->sendToWindowManager((*other)->root(), X11Atom::edid, {});  // stands for the end
    }
    thread_.join();
  }
  ObedientWindowManager(const ObedientWindowManager&) = delete;
  ObedientWindowManager& operator=(const ObedientWindowManager&) = delete;

  /// Waits until it has done everything that it was asked for before.
  void waitUntilIdle() {
    const auto other = *X11Connection::open();
    const auto mark = ++marks_;
    other->sendToWindowManager(other->root(), X11Atom::timestamp, {mark, 0, 0, 0, 0});
    while (parseCardinal(other->takeProperty(
               other->requestProperty(other->root(), X11Atom::timestamp, XCB_ATOM_CARDINAL))) != mark) {
      std::this_thread::yield();
    }
  }

  /// How often each message came.
  int count(X11Atom message) {
    const std::lock_guard lock(mutex_);
    return counts_[message];
  }

 private:
  static constexpr std::uint32_t border = 2;
  static constexpr std::uint32_t titleBar = 20;
  static constexpr std::uint32_t clientEvents =
      XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY;

  struct Client {
    xcb_window_t frame = XCB_WINDOW_NONE;
    std::vector<std::uint32_t> states;
  };

  void run() {
    while (const XcbPtr<xcb_generic_event_t> event{xcb_wait_for_event(raw())}) {
      const int type = x11EventType(*event);
      if (type == XCB_MAP_REQUEST) {
        show(x11EventAs<xcb_map_request_event_t>(*event).window);
      } else if (type == XCB_UNMAP_NOTIFY) {
        withdraw(x11EventAs<xcb_unmap_notify_event_t>(*event).window);
      } else if (type == XCB_DESTROY_NOTIFY) {
        forget(x11EventAs<xcb_destroy_notify_event_t>(*event).window);
      } else if (type == XCB_CLIENT_MESSAGE) {
        const auto& message = x11EventAs<xcb_client_message_event_t>(*event);
        if (message.type == atom(X11Atom::edid)) {
          return;
        }
        obey(message);
      }
      xcb_flush(raw());
    }
  }

  void show(xcb_window_t window) {
    if (clients_.contains(window)) {
      changeState(window, 0, atom(X11Atom::netWmStateHidden));
      xcb_map_window(raw(), window);
      return;
    }
    const auto size = connection().reply(xcb_get_geometry_reply, xcb_get_geometry(raw(), window));
    if (!size) {
      return;
    }
    const CGSize client{static_cast<double>(size->width), static_cast<double>(size->height)};
    auto parent = createWindow(root(), {static_cast<double>(size->x), static_cast<double>(size->y)},
                               {client.width + 2 * border, client.height + titleBar + border});
    clients_[window].frame = parent;
    xcb_map_window(raw(), parent);
    CGPoint corner{border, titleBar};
    for (int i = 1; i < depth_; ++i, corner = {0, 0}) {
      parent = createWindow(parent, corner, client);
      xcb_map_window(raw(), parent);
    }
    xcb_change_window_attributes(raw(), parent, XCB_CW_EVENT_MASK, &clientEvents);
    xcb_reparent_window(raw(), window, parent, static_cast<std::int16_t>(corner.x),
                        static_cast<std::int16_t>(corner.y));
    xcb_map_window(raw(), window);
    setCardinals(window, X11Atom::netFrameExtents, {border, border, titleBar, border});
    setCardinals(window, X11Atom::netWmDesktop, {current_});
    order_.push_back(window);
    setWords(root(), X11Atom::netClientList, XCB_ATOM_WINDOW, order_);
    setWords(root(), X11Atom::netActiveWindow, XCB_ATOM_WINDOW, {window});
  }

  void withdraw(xcb_window_t window) {
    if (clients_.contains(window)) {
      xcb_delete_property(raw(), window, atom(X11Atom::netWmDesktop));
      xcb_reparent_window(raw(), window, root(), 0, 0);
      forget(window);
    }
  }

  void forget(xcb_window_t window) {
    if (const auto client = clients_.extract(window); !client.empty()) {
      xcb_destroy_window(raw(), client.mapped().frame);
      std::erase(order_, window);
      setWords(root(), X11Atom::netClientList, XCB_ATOM_WINDOW, order_);
    }
  }

  void obey(const xcb_client_message_event_t& message) {
    for (const auto& [name, act] : actions_) {
      if (message.type == atom(name)) {
        const std::lock_guard lock(mutex_);
        ++counts_[name];
        if (!ignored_.contains(name)) {
          act(message.window, message.data.data32);
        }
      }
    }
  }

  void setCardinals(xcb_window_t window, X11Atom property, const std::vector<std::uint32_t>& values) {
    setWords(window, property, XCB_ATOM_CARDINAL, values);
  }

  void raise(xcb_window_t window) {
    const std::uint32_t above = XCB_STACK_MODE_ABOVE;
    xcb_configure_window(raw(), clients_[window].frame, XCB_CONFIG_WINDOW_STACK_MODE, &above);
  }

  void changeState(xcb_window_t window, std::uint32_t add, xcb_atom_t state) {
    const auto client = clients_.find(window);
    if (client == clients_.end() || state == XCB_ATOM_NONE) {
      return;
    }
    auto& states = client->second.states;
    std::erase(states, state);
    if (add != 0) {
      states.push_back(state);
    }
    setWords(window, X11Atom::netWmState, XCB_ATOM_ATOM, states);
  }

  using Words = const std::uint32_t*;
  const std::map<X11Atom, std::function<void(xcb_window_t, Words)>> actions_ = {
      {X11Atom::timestamp, [this](xcb_window_t, Words words) { setCardinals(root(), X11Atom::timestamp, {words[0]}); }},
      {X11Atom::netWmDesktop,
       [this](xcb_window_t window, Words words) { setCardinals(window, X11Atom::netWmDesktop, {words[0]}); }},
      {X11Atom::netCurrentDesktop,
       [this](xcb_window_t, Words words) {
         current_ = words[0];
         setCardinals(root(), X11Atom::netCurrentDesktop, {current_});
       }},
      {X11Atom::netNumberOfDesktops,
       [this](xcb_window_t, Words words) { setCardinals(root(), X11Atom::netNumberOfDesktops, {words[0]}); }},
      {X11Atom::netActiveWindow,
       [this](xcb_window_t window, Words) {
         changeState(window, 0, atom(X11Atom::netWmStateHidden));
         raise(window);
         setWords(root(), X11Atom::netActiveWindow, XCB_ATOM_WINDOW, {window});
       }},
      {X11Atom::netRestackWindow, [this](xcb_window_t window, Words) { raise(window); }},
      {X11Atom::wmChangeState,
       [this](xcb_window_t window, Words) { changeState(window, 1, atom(X11Atom::netWmStateHidden)); }},
      {X11Atom::netWmState,
       [this](xcb_window_t window, Words words) {
         changeState(window, words[0], words[1]);
         changeState(window, words[0], words[2]);
       }},
      {X11Atom::netCloseWindow, [this](xcb_window_t window, Words) { xcb_destroy_window(raw(), window); }},
      {X11Atom::netMoveresizeWindow,
       [this](xcb_window_t window, Words words) {
         const std::uint32_t outer[] = {words[1], words[2], words[3] + 2 * border, words[4] + titleBar + border};
         constexpr std::uint16_t size = XCB_CONFIG_WINDOW_WIDTH | XCB_CONFIG_WINDOW_HEIGHT;
         xcb_configure_window(raw(), clients_[window].frame, XCB_CONFIG_WINDOW_X | XCB_CONFIG_WINDOW_Y | size, outer);
         xcb_configure_window(raw(), window, size, words + 3);
       }},
  };

  const std::set<X11Atom> ignored_;
  const int depth_;
  std::uint32_t marks_ = 0;
  std::thread thread_;

  // The thread's only.
  std::uint32_t current_ = 0;
  std::map<xcb_window_t, Client> clients_;
  std::vector<xcb_window_t> order_;

  std::mutex mutex_;
  std::map<X11Atom, int> counts_;  ///< guarded by mutex_
};

}  // namespace tallowin
