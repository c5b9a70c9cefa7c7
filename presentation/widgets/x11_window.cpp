#include "presentation/widgets/x11_window.h"

#include <QCursor>
#include <QGuiApplication>
#include <QScreen>
#include <QWidget>
#include <cstdlib>
#include <memory>
#include <string>
#include <string_view>
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

bool hasCompositor() {
  auto* const connection = xConnection();
  if (connection == nullptr) {
    return false;
  }
  constexpr std::string_view name = "_NET_WM_CM_S0";
  const Replied<xcb_intern_atom_reply_t> atom(
      xcb_intern_atom_reply(connection, xcb_intern_atom(connection, 1, name.size(), name.data()), nullptr), &std::free);
  if (!atom || atom->atom == XCB_ATOM_NONE) {
    return false;
  }
  const Replied<xcb_get_selection_owner_reply_t> owner(
      xcb_get_selection_owner_reply(connection, xcb_get_selection_owner(connection, atom->atom), nullptr), &std::free);
  return owner && owner->owner != XCB_WINDOW_NONE;
}

QScreen* screenAtPointer() {
  auto* const screen = QGuiApplication::screenAt(QCursor::pos());
  return screen != nullptr ? screen : QGuiApplication::primaryScreen();
}

}  // namespace tallowin
