#pragma once

#include <set>
#include <xcb/xcb.h>

#include "platform/emulated/broadcast_notification_center.h"
#include "platform/main_queue.h"
#include "platform/x11/x11_applications.h"
#include "platform/x11/x11_connection.h"

namespace tallowin {

/// Posts which applications came, went and became the active one, with their process ids, to the workspace's centre:
/// once for each burst of changes, as window managers write the list of windows and the active window many times over
/// for one new window. An application comes with its first window and goes with its last. One that is the active one
/// again after none was is not posted. Main thread only.
class X11ApplicationChanges {
 public:
  X11ApplicationChanges(X11Connection& connection, X11WindowReader& reader, X11Applications& applications,
                        MainQueue& queue, BroadcastNotificationCenter& notifications);

  /// Takes an event of the server. Property events of the root window must have been asked for.
  void handle(const xcb_generic_event_t& event);

 private:
  void lookSoon();
  void look();
  void post(NotificationName name, ProcessID pid);

  X11Connection& connection_;
  X11WindowReader& reader_;
  X11Applications& applications_;
  MainQueue& queue_;
  BroadcastNotificationCenter& notifications_;

  bool known_ = false;  ///< whether the applications were looked at before: what runs at the start did not come
  std::set<ProcessID> running_;
  ProcessID active_ = 0;  ///< the last one that was the active one, 0 at first
  WorkItem work_;
};

}  // namespace tallowin
