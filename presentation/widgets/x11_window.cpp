#include "presentation/widgets/x11_window.h"

#include <QCursor>
#include <QGuiApplication>
#include <QScreen>
#include <QWidget>
#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdlib>
#include <initializer_list>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>
#include <xcb/xcb.h>

namespace tallowin {

namespace {

/// Null on other platforms.
xcb_connection_t* xConnection() {
  auto* const x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
  return x11 != nullptr ? x11->connection() : nullptr;
}

template <typename Reply>
using Replied = std::unique_ptr<Reply, decltype(&std::free)>;

constexpr std::uint32_t everyDesktop = 0xFFFFFFFF;  // EWMH, _NET_WM_DESKTOP

constexpr std::uint8_t bitsOfNumber = 32;

xcb_window_t rootOf(xcb_connection_t* connection) {
  return xcb_setup_roots_iterator(xcb_get_setup(connection)).data->root;
}

/// The atoms of these names, which are made where there are none.
std::vector<xcb_atom_t> atoms(xcb_connection_t* connection, std::initializer_list<std::string_view> names) {
  std::vector<xcb_intern_atom_cookie_t> asked;
  for (const auto name : names) {
    asked.push_back(xcb_intern_atom(connection, 0, static_cast<std::uint16_t>(name.size()), name.data()));
  }
  std::vector<xcb_atom_t> answered;
  for (const auto cookie : asked) {
    const Replied<xcb_intern_atom_reply_t> reply(xcb_intern_atom_reply(connection, cookie, nullptr), &std::free);
    answered.push_back(reply ? reply->atom : static_cast<xcb_atom_t>(XCB_ATOM_NONE));
  }
  return answered;
}

xcb_get_property_cookie_t ask(xcb_connection_t* connection, xcb_window_t window, xcb_atom_t property) {
  constexpr std::uint32_t most = 1U << 16;  // in units of 32 bits
  return xcb_get_property(connection, 0, window, property, XCB_GET_PROPERTY_TYPE_ANY, 0, most);
}

/// What a property holds that is a list of 32-bit numbers; nothing when there is none.
std::vector<std::uint32_t> numbers(xcb_connection_t* connection, xcb_get_property_cookie_t asked) {
  const Replied<xcb_get_property_reply_t> reply(xcb_get_property_reply(connection, asked, nullptr), &std::free);
  if (!reply || reply->format != bitsOfNumber) {
    return {};
  }
  const auto* const first = static_cast<const std::uint32_t*>(xcb_get_property_value(reply.get()));
  return {first, first + reply->value_len};
}

}  // namespace

void setWindowInstance(QWidget& window, const char* instance) {
  auto* const connection = xConnection();
  if (connection == nullptr) {
    return;
  }
  using namespace std::string_literals;
  const auto texts = instance + "\0Tallowin\0"s;
  constexpr std::uint8_t bitsOfText = 8;
  xcb_change_property(connection, XCB_PROP_MODE_REPLACE, static_cast<xcb_window_t>(window.winId()), XCB_ATOM_WM_CLASS,
                      XCB_ATOM_STRING, bitsOfText, static_cast<std::uint32_t>(texts.size()), texts.data());
}

void activateForUser(QWidget& window) {
  window.activateWindow();
  auto* const connection = xConnection();
  if (connection == nullptr) {
    return;
  }
  constexpr std::uint32_t fromUser = 2;  // EWMH, _NET_ACTIVE_WINDOW: what pagers say of what the user does
  xcb_client_message_event_t event = {};
  event.response_type = XCB_CLIENT_MESSAGE;
  event.format = bitsOfNumber;
  event.window = static_cast<xcb_window_t>(window.winId());
  event.type = atoms(connection, {"_NET_ACTIVE_WINDOW"}).front();
  event.data.data32[0] = fromUser;
  xcb_send_event(connection, 0, rootOf(connection),
                 XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT,
                 reinterpret_cast<const char*>(&event));
  xcb_flush(connection);
}

bool hasCompositor() {
  auto* const connection = xConnection();
  if (connection == nullptr) {
    return false;
  }
  const auto cookie = xcb_get_selection_owner(connection, atoms(connection, {"_NET_WM_CM_S0"}).front());
  const Replied<xcb_get_selection_owner_reply_t> owner(xcb_get_selection_owner_reply(connection, cookie, nullptr),
                                                       &std::free);
  return owner && owner->owner != XCB_WINDOW_NONE;
}

bool isFullScreenInFront() {
  auto* const connection = xConnection();
  if (connection == nullptr) {
    return false;
  }
  const auto names = atoms(connection, {"_NET_CLIENT_LIST_STACKING", "_NET_CURRENT_DESKTOP", "_NET_WM_DESKTOP",
                                        "_NET_WM_STATE", "_NET_WM_STATE_FULLSCREEN"});
  const auto root = rootOf(connection);
  const auto stackingAsked = ask(connection, root, names[0]);
  const auto currentAsked = ask(connection, root, names[1]);
  auto windows = numbers(connection, stackingAsked);
  const auto current = numbers(connection, currentAsked);
  std::vector<std::array<xcb_get_property_cookie_t, 2>> asked;
  std::ranges::reverse(windows);
  for (const auto window : windows) {
    asked.push_back({ask(connection, window, names[2]), ask(connection, window, names[3])});
  }
  std::optional<bool> isFullScreen;
  for (const auto& [desktopAsked, stateAsked] : asked) {
    const auto desktop = numbers(connection, desktopAsked);
    const auto state = numbers(connection, stateAsked);
    if (!isFullScreen && (desktop == current || desktop == std::vector{everyDesktop})) {
      isFullScreen = std::ranges::find(state, names[4]) != state.end();
    }
  }
  return isFullScreen.value_or(false);
}

QScreen* screenAtPointer() {
  auto* const screen = QGuiApplication::screenAt(QCursor::pos());
  return screen != nullptr ? screen : QGuiApplication::primaryScreen();
}

void whenScreenGoes(QWidget& window, std::function<void()> then) {
  // Queued, as the screen is still there when it is said.
  QObject::connect(qGuiApp, &QGuiApplication::screenRemoved, &window, std::move(then), Qt::QueuedConnection);
}

}  // namespace tallowin
