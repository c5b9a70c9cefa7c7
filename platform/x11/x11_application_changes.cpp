#include "platform/x11/x11_application_changes.h"

#include <algorithm>
#include <iterator>
#include <vector>

namespace tallowin {

X11ApplicationChanges::X11ApplicationChanges(X11Connection& connection, X11WindowReader& reader,
                                             X11Applications& applications, MainQueue& queue,
                                             BroadcastNotificationCenter& notifications)
    : connection_(connection),
      reader_(reader),
      applications_(applications),
      queue_(queue),
      notifications_(notifications) {
  // A turn later, as reading which applications are installed takes its time: what a command came for goes first.
  work_ = queue_.after(Duration::zero(), [this] {
    work_.cancel();
    lookSoon();
  });
}

void X11ApplicationChanges::handle(const xcb_generic_event_t& event) {
  if (reader_.numbers().handle(event)) {
    applications_.invalidate();
  }
  if ((event.response_type & 0x7F) != XCB_PROPERTY_NOTIFY) {
    return;
  }
  const auto& changed = reinterpret_cast<const xcb_property_notify_event_t&>(event);
  if (changed.window != connection_.root()) {
    return;
  }
  if (changed.atom == connection_.atom(X11Atom::netClientList)) {
    applications_.invalidate();
    lookSoon();
  } else if (changed.atom == connection_.atom(X11Atom::netActiveWindow)) {
    lookSoon();
  }
}

void X11ApplicationChanges::lookSoon() {
  if (!work_) {
    work_ = queue_.after(Duration::zero(), [this] {
      work_.cancel();
      look();
    });
  }
}

void X11ApplicationChanges::look() {
  const auto snapshot = applications_.latest();
  const auto active = reader_.activeWindow();
  std::set<ProcessID> running;
  for (const auto& application : snapshot->applications) {
    running.insert(application.pid);
  }
  std::vector<ProcessID> gone;
  std::vector<ProcessID> come;
  std::ranges::set_difference(running_, running, std::back_inserter(gone));
  std::ranges::set_difference(running, running_, std::back_inserter(come));
  running_ = std::move(running);
  const auto* front = snapshot->owner(active);
  const auto before = active_;
  active_ = front == nullptr ? active_ : front->pid;
  if (!std::exchange(known_, true)) {
    return;
  }
  // Posted when everything is as it is now, as observers look around.
  const bool activated = front != nullptr && front->pid != before;
  for (const auto pid : gone) {
    post(NotificationName::NSWorkspaceDidTerminateApplicationNotification, pid);
  }
  for (const auto pid : come) {
    post(NotificationName::NSWorkspaceDidLaunchApplicationNotification, pid);
  }
  if (activated) {
    post(NotificationName::NSWorkspaceDidActivateApplicationNotification, active_);
  }
}

void X11ApplicationChanges::post(NotificationName name, ProcessID pid) {
  notifications_.post({name, pid});
}

}  // namespace tallowin
