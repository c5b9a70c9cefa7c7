#pragma once

#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/workspace.h"
#include "platform/x11/x11_glance.h"
#include "platform/x11/x11_moment.h"
#include "platform/x11/x11_window_reader.h"
#include "platform/xdg/installed_applications.h"

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
/// change. Any thread.
class X11Applications {
 public:
  /// Owned by whoever looks at it, and by this object until the next reading.
  using Snapshot = std::shared_ptr<const X11ApplicationSnapshot>;

  X11Applications(X11WindowReader& reader, InstalledApplications& installed, X11Moment& moment, X11Glance& glance)
      : reader_(reader), installed_(installed), moment_(moment), glance_(glance) {}

  /// Reads everything now.
  Snapshot refresh();
  /// The latest reading, or a new one when windows have come or gone since. Which windows there are and whose they are
  /// is right then; their titles, states, frames and order are those of that reading.
  Snapshot latest();
  /// The latest reading if nothing can have happened since (X11Moment), so that questions about each of many windows
  /// need not go to the server; null otherwise.
  Snapshot present();
  /// Makes latest() read again.
  void invalidate();

  /// The active window, 0 for none. Costs one round trip where neither a reading nor a glance stands for the present.
  [[nodiscard]] xcb_window_t activeWindow();
  /// The application as it is now. Costs round trips where there is no present().
  [[nodiscard]] RunningApplication running(const X11Application& application);

  /// Takes down that these windows of an application were minimised to hide it.
  void setHidden(ProcessID pid, std::vector<xcb_window_t> windows);
  /// The windows that were minimised to hide it; they are forgotten. Empty for an application that is not hidden.
  std::vector<xcb_window_t> takeHidden(ProcessID pid);

 private:
  bool isHidden(ProcessID pid, const Snapshot& present);

  X11WindowReader& reader_;
  InstalledApplications& installed_;
  X11Moment& moment_;
  X11Glance& glance_;

  std::mutex mutex_;  ///< guards what follows
  Snapshot latest_;
  X11Moment::Stamp madeAt_;
  bool stale_ = true;
  unsigned changes_ = 0;  ///< so often invalidated: a reading that was overtaken stays stale
  std::map<ProcessID, std::vector<xcb_window_t>> hidden_;
};

/// Groups the windows by process and names the applications.
[[nodiscard]] std::vector<X11Application> groupByProcess(const std::vector<X11Window>& windows,
                                                         const ApplicationIndex& installed);

}  // namespace tallowin
