#pragma once

#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "base/broadcast_notification_center.h"
#include "platform/workspace.h"
#include "platform/x11/x11_window_reader.h"
#include "platform/xdg/application_index.h"

namespace tallowin {

/// A process with windows.
struct X11Application {
  ProcessID pid = 0;
  /// The id of its desktop entry, else the class of its oldest ordinary window, else its program's name.
  std::string bundleIdentifier;
  std::string name;  ///< from the desktop entry, else the same as bundleIdentifier would be without an entry
  ActivationPolicy policy = ActivationPolicy::accessory;  ///< regular when it has an ordinary window
  std::vector<xcb_window_t> windows;                      ///< front to back
};

/// The windows and whose they are, at one moment.
struct X11ApplicationSnapshot {
  X11WindowSnapshot screen;
  std::vector<X11Application> applications;  ///< in the order of their frontmost windows

  [[nodiscard]] const X11Application* find(ProcessID pid) const;
  /// The application that has this window; null when none does.
  [[nodiscard]] const X11Application* owner(xcb_window_t window) const;
};

/// Which applications run, found through their windows: one for each process. A reading is kept until the windows
/// change. Main thread only.
class X11Applications {
 public:
  /// Owned by whoever looks at it, and by this object until the next reading.
  using Snapshot = std::shared_ptr<const X11ApplicationSnapshot>;

  X11Applications(X11Connection& connection, X11DesktopReader& desktops, X11WindowReader& reader,
                  InstalledApplications& installed)
      : connection_(connection), desktops_(desktops), reader_(reader), installed_(installed) {}

  /// Reads everything now.
  Snapshot refresh();
  /// The latest reading, or a new one when windows have come or gone since. Which windows there are and whose they are
  /// is right then; their titles, states, frames and order are those of that reading.
  Snapshot latest() { return isStale_ ? refresh() : latest_; }
  /// The latest reading if it stands for the present (X11Connection::moment), so that questions about each of many
  /// windows need not go to the server; null otherwise.
  Snapshot present();
  /// Makes latest() read again.
  void invalidate() { isStale_ = true; }

  /// The active window, 0 for none. Costs one round trip where no reading stands for the present.
  [[nodiscard]] xcb_window_t activeWindow();
  /// The application as it is now. Costs round trips where there is no present().
  [[nodiscard]] RunningApplication running(const X11Application& application);

  /// Takes down that these windows of an application were minimised to hide it.
  void setHidden(ProcessID pid, std::vector<xcb_window_t> windows) { hidden_[pid] = std::move(windows); }
  /// The windows that were minimised to hide it; they are forgotten. Empty for an application that is not hidden.
  std::vector<xcb_window_t> takeHidden(ProcessID pid);

  /// Takes down which window of an application is to be made active with it the next time.
  void setMainWindow(ProcessID pid, xcb_window_t window) { mainWindows_[pid] = window; }
  /// That window, which is forgotten; 0 for none.
  xcb_window_t takeMainWindow(ProcessID pid);

 private:
  bool isHidden(ProcessID pid);

  X11Connection& connection_;
  X11DesktopReader& desktops_;
  X11WindowReader& reader_;
  InstalledApplications& installed_;

  Snapshot latest_;
  unsigned readAt_ = 0;  ///< the connection's moment
  bool isStale_ = true;
  std::map<ProcessID, std::vector<xcb_window_t>> hidden_;
  std::map<ProcessID, xcb_window_t> mainWindows_;
};

/// Groups the windows by process and names the applications.
[[nodiscard]] std::vector<X11Application> groupByProcess(const std::vector<X11Window>& windows,
                                                         const ApplicationIndex& installed);

/// Posts which applications came, went and became the active one, with their process ids, to the workspace's centre:
/// once for each burst of changes, as window managers write the list of windows and the active window many times over
/// for one new window. An application comes with its first window and goes with its last. One that is the active one
/// again after none was is not posted. Main thread only.
class X11ApplicationChanges {
 public:
  X11ApplicationChanges(X11Connection& connection, X11WindowReader& reader, X11Applications& applications,
                        MainQueue& queue, BroadcastNotificationCenter& notifications);

  /// Takes an event of the server.
  void handle(const xcb_generic_event_t& event);

 private:
  void updateSoon();
  void update();

  X11Connection& connection_;
  X11WindowReader& reader_;
  X11Applications& applications_;
  MainQueue& queue_;
  BroadcastNotificationCenter& notifications_;

  bool known_ = false;  ///< whether the applications were read before: what runs at the start did not come
  std::set<ProcessID> running_;
  ProcessID active_ = 0;  ///< the last one that was the active one, 0 at first
  WorkItem work_;
};

}  // namespace tallowin
