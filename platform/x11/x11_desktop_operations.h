#pragma once

#include "platform/emulated/desktop_operations.h"
#include "platform/x11/x11_connection.h"
#include "platform/x11/x11_desktop_reader.h"
#include "platform/x11/x11_window_carrier.h"

namespace tallowin {

/// The window manager's desktops, asked for by EWMH root window messages. One row, as all monitors switch together.
class X11DesktopOperations : public DesktopOperations {
 public:
  X11DesktopOperations(X11Connection& connection, X11DesktopReader& desktops, MainQueue& queue);

  std::vector<DesktopRow> rows() override;
  /// Always the one row, also while rows() has none.
  std::optional<std::size_t> rowUnderPointer() override;
  /// A window whose title bar is being dragged comes along, which takes a fifth of a second.
  void switchTo(ManagedSpaceID space, SwitchCause cause) override;
  /// True means that the window manager was asked. False where desktops are dynamic: those come by being used.
  bool addDesktop(const std::string& display) override;
  /// Only the last desktop can go, as EWMH knows a number of desktops only. Never the only one.
  bool removeDesktop(ManagedSpaceID space) override;

 private:
  void switchPlainly(ManagedSpaceID space);
  bool askForCount(std::size_t count);

  X11Connection& connection_;
  X11DesktopReader& desktops_;
  X11WindowCarrier carrier_;
};

}  // namespace tallowin
