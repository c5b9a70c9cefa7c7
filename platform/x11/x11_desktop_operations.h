#pragma once

#include "platform/emulated/desktop_operations.h"
#include "platform/x11/x11_connection.h"
#include "platform/x11/x11_desktop_reader.h"
#include "platform/x11/x11_window_carrier.h"
#include "platform/x11/x11_windows.h"

namespace tallowin {

/// The window manager's desktops, asked for by EWMH root window messages. One row, as all monitors switch together.
class X11DesktopOperations : public DesktopOperations {
 public:
  X11DesktopOperations(X11Connection& connection, X11DesktopReader& desktops, X11Windows& windows, MainQueue& queue);

  std::vector<DesktopRow> rows() override;
  /// Always the one display, also while rows() has none.
  std::optional<std::string> displayUnderPointer() override;
  /// A window whose title bar is being dragged comes along, which takes a fifth of a second.
  void switchTo(ManagedSpaceID space, SwitchCause cause) override;
  /// True when the desktop is there. False where desktops are dynamic: those come by being used. Waits at most a tenth
  /// of a second.
  bool addDesktop(const std::string& display) override;
  /// As EWMH knows a number of desktops only, just the last one can go. For another one all windows farther right move
  /// one desktop to the left, and so does the view when it is there; the windows of the one that goes then share their
  /// desktop with those of its right neighbour. Never the only one. Waits at most a fifth of a second.
  bool removeDesktop(ManagedSpaceID space) override;

  /// Whether desktops can be added and removed, as far as is known: not where they are dynamic, and not under a window
  /// manager that has ignored that.
  [[nodiscard]] bool canChangeCount();

 private:
  void switchPlainly(ManagedSpaceID space);
  bool askForCount(std::size_t count);
  bool moveLeft(const X11DesktopState& state, std::size_t firstDesktop);

  X11Connection& connection_;
  X11DesktopReader& desktops_;
  X11Windows& windows_;
  X11WindowCarrier carrier_;
};

}  // namespace tallowin
