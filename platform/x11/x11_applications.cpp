#include "platform/x11/x11_applications.h"

#include <algorithm>
#include <iterator>
#include <tuple>

#include "platform/x11/x11_properties.h"

namespace tallowin {

namespace {

/// Reading which applications are installed takes its time: what a command came for, and whoever waited for the start,
/// goes first.
constexpr Duration untilFirstUpdate = std::chrono::milliseconds(50);

/// The window that tells what its application is: the oldest ordinary one, as far as window ids grow with time.
const X11Window& speaker(const std::vector<const X11Window*>& windows) {
  return **std::ranges::min_element(windows, std::less(), [](const X11Window* window) {
    return std::tuple(window->layer != 0, window->className.empty(), window->id);
  });
}

X11Application describe(ProcessID pid, const std::vector<const X11Window*>& windows,
                        const ApplicationIndex& installed) {
  const auto& window = speaker(windows);
  const ApplicationHint hint{window.instance, window.className, programName(pid)};
  X11Application application;
  application.pid = pid;
  for (const auto* text : {&hint.className, &hint.instance, &hint.executable}) {
    if (application.bundleIdentifier.empty()) {
      application.bundleIdentifier = *text;
    }
  }
  application.name = application.bundleIdentifier;
  if (const auto* entry = installed.match(hint)) {
    application.bundleIdentifier = entry->id;
    application.name = entry->entry.name.empty() ? application.name : entry->entry.name;
  }
  for (const auto* each : windows) {
    application.windows.push_back(each->id);
    application.policy = each->layer == 0 ? ActivationPolicy::regular : application.policy;
  }
  return application;
}

}  // namespace

std::vector<X11Application> groupByProcess(const std::vector<X11Window>& windows, const ApplicationIndex& installed) {
  std::vector<ProcessID> order;
  std::map<ProcessID, std::vector<const X11Window*>> groups;
  for (const auto& window : windows) {
    auto& group = groups[window.pid];
    if (group.empty()) {
      order.push_back(window.pid);
    }
    group.push_back(&window);
  }
  std::vector<X11Application> applications;
  for (const auto pid : order) {
    applications.push_back(describe(pid, groups[pid], installed));
  }
  return applications;
}

const X11Application* X11ApplicationSnapshot::find(ProcessID pid) const {
  const auto found = std::ranges::find(applications, pid, &X11Application::pid);
  return found == applications.end() ? nullptr : &*found;
}

const X11Application* X11ApplicationSnapshot::owner(xcb_window_t window) const {
  const auto* found = screen.find(window);
  return found == nullptr ? nullptr : find(found->pid);
}

X11Applications::Snapshot X11Applications::refresh() {
  readAt_ = connection_.moment();
  auto made = std::make_shared<X11ApplicationSnapshot>();
  made->screen = reader_.read();
  made->applications = groupByProcess(made->screen.windows, *installed_.current());
  latest_ = std::move(made);
  isStale_ = false;
  return latest_;
}

X11Applications::Snapshot X11Applications::present() {
  return !isStale_ && readAt_ == connection_.moment() ? latest_ : nullptr;
}

xcb_window_t X11Applications::activeWindow() {
  const auto reading = present();
  return reading == nullptr ? desktops_.present().activeWindow : reading->screen.view.activeWindow;
}

RunningApplication X11Applications::running(const X11Application& application) {
  RunningApplication running;
  running.pid = application.pid;
  if (!application.bundleIdentifier.empty()) {
    running.bundleIdentifier = application.bundleIdentifier;
    running.localizedName = application.name;
  }
  running.activationPolicy = application.policy;
  running.isActive = std::ranges::find(application.windows, activeWindow()) != application.windows.end();
  running.isHidden = isHidden(application.pid);
  return running;
}

std::vector<xcb_window_t> X11Applications::takeHidden(ProcessID pid) {
  const auto node = hidden_.extract(pid);
  return node.empty() ? std::vector<xcb_window_t>() : std::move(node.mapped());
}

xcb_window_t X11Applications::takeMainWindow(ProcessID pid) {
  const auto node = mainWindows_.extract(pid);
  return node.empty() ? xcb_window_t{XCB_WINDOW_NONE} : node.mapped();
}

/// Whether it was hidden and the user has not got a window of it back since.
bool X11Applications::isHidden(ProcessID pid) {
  const auto found = hidden_.find(pid);
  if (found == hidden_.end()) {
    return false;
  }
  const auto reading = present();
  bool any = false;
  for (const auto number : found->second) {
    const auto read = reading == nullptr ? reader_.read(number) : std::nullopt;
    const auto* window = reading != nullptr ? reading->screen.find(number) : read ? &*read : nullptr;
    if (window != nullptr && !window->hidden) {
      return false;
    }
    any = any || window != nullptr;
  }
  return any;
}

X11ApplicationChanges::X11ApplicationChanges(X11Connection& connection, X11WindowReader& reader,
                                             X11Applications& applications, MainQueue& queue,
                                             BroadcastNotificationCenter& notifications)
    : connection_(connection),
      reader_(reader),
      applications_(applications),
      queue_(queue),
      notifications_(notifications) {
  work_ = queue_.after(untilFirstUpdate, [this] {
    work_.cancel();
    updateSoon();
  });
}

void X11ApplicationChanges::handle(const xcb_generic_event_t& event) {
  if (reader_.numbers().handle(event)) {
    applications_.invalidate();
  }
  if (x11EventType(event) != XCB_PROPERTY_NOTIFY) {
    return;
  }
  const auto& changed = x11EventAs<xcb_property_notify_event_t>(event);
  if (changed.window != connection_.root()) {
    return;
  }
  if (changed.atom == connection_.atom(X11Atom::netClientList)) {
    applications_.invalidate();
    updateSoon();
  } else if (changed.atom == connection_.atom(X11Atom::netActiveWindow)) {
    updateSoon();
  }
}

void X11ApplicationChanges::updateSoon() {
  if (!work_) {
    work_ = queue_.after(Duration::zero(), [this] {
      work_.cancel();
      update();
    });
  }
}

void X11ApplicationChanges::update() {
  const auto snapshot = applications_.latest();
  const auto active = applications_.activeWindow();
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
    notifications_.post({NotificationName::NSWorkspaceDidTerminateApplicationNotification, pid});
  }
  for (const auto pid : come) {
    notifications_.post({NotificationName::NSWorkspaceDidLaunchApplicationNotification, pid});
  }
  if (activated) {
    notifications_.post({NotificationName::NSWorkspaceDidActivateApplicationNotification, active_});
  }
}

}  // namespace tallowin
