#pragma once

#include <functional>
#include <map>
#include <optional>

#include "platform/emulated/desktop_operations.h"
#include "platform/space_places.h"
#include "platform/x11/x11_connection.h"
#include "platform/x11/x11_desktop_reader.h"
#include "platform/x11/x11_window_carrier.h"
#include "platform/x11/x11_windows.h"

namespace tallowin {

/// The window manager's desktops, asked for by EWMH root window messages. One row, as all monitors switch together.
///
/// EWMH knows a number of desktops only: the last one goes, and another one comes at the right end. For all else the
/// number is changed first, and once that has happened all windows are moved to where their desktops stand then, and
/// the view with them. Meanwhile everybody reads the desktops as they were before (X11DesktopReader). Main thread only.
class X11DesktopOperations : public DesktopOperations, public SpacePlaces {
 public:
  X11DesktopOperations(X11Connection& connection, X11DesktopReader& desktops, KeptDesktopPlaces& places,
                       X11Windows& windows, MainQueue& queue);

  /// Told when a change that was waited for was given up, or arrived in another way than by an event of the server.
  std::function<void()> onDesktopsChanged = [] {};

  /// To be called when the number of desktops or the current one has changed, before anybody else is told.
  void desktopsChanged();

  std::vector<DesktopRow> rows() override;
  /// Always the one display, also while rows() has none.
  std::optional<std::string> displayUnderPointer() override;
  /// A window whose title bar is being dragged comes along, which takes a fifth of a second.
  void switchTo(ManagedSpaceID space, SwitchCause cause) override;
  /// True when the desktop is there. False where desktops are dynamic: those come by being used; and where it takes
  /// longer than a tenth of a second: it counts as added here if it comes within four seconds.
  bool addDesktop(const std::string& display) override;
  /// The windows of the one that goes then share their desktop with those of its right neighbour, of the last one with
  /// those of its left. Never the only one. Waits as long as addDesktop().
  bool removeDesktop(ManagedSpaceID space) override;

  std::optional<std::vector<ManagedSpaceID>> places() override;
  std::vector<ManagedSpaceID> parked() override { return places_.get().parked(); }
  void adopt(const std::vector<ManagedSpaceID>& spaces) override;
  /// Waits as long as addDesktop().
  bool restore(const std::vector<ManagedSpaceID>& spaces) override;

  /// Whether desktops can be added and removed, as far as is known: not where they are dynamic, and not under a window
  /// manager that has ignored that.
  [[nodiscard]] bool canChangeCount();

 private:
  /// A change of the desktops that takes several requests.
  struct Change {
    X11DesktopState before;
    std::vector<ManagedSpaceID> wanted;
    std::map<xcb_window_t, std::uint32_t> targets;  ///< the desktops, by index, of the windows that have to move
    std::optional<std::uint32_t> current;           ///< the index that the desktop in front gets, if another one
    bool counted = false;                           ///< there are as many desktops as wanted
    WorkItem givingUp;
  };

  void switchPlainly(ManagedSpaceID space);
  void switchToIndex(std::uint32_t index);
  bool change(const X11DesktopState& before, std::vector<ManagedSpaceID> wanted);
  void begin(const X11DesktopState& before, std::vector<ManagedSpaceID> wanted);
  bool hasCount();
  bool isDone();
  bool haveWindowsArrived();
  void finish();
  void giveUp();
  void endChange();

  X11Connection& connection_;
  X11DesktopReader& desktops_;
  KeptDesktopPlaces& places_;
  X11Windows& windows_;
  MainQueue& queue_;
  X11WindowCarrier carrier_;
  std::optional<Change> change_;  ///< under way
};

}  // namespace tallowin
