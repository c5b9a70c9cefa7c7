#include "platform/x11/x11_applications.h"

#include <algorithm>
#include <tuple>

#include "platform/x11/x11_process_identity.h"

namespace tallowin {

namespace {

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
  unsigned changes = 0;
  {
    const std::lock_guard lock(mutex_);
    changes = changes_;
  }
  const auto stamp = moment_.now();
  auto made = std::make_shared<X11ApplicationSnapshot>();
  made->screen = reader_.read();
  made->applications = groupByProcess(made->screen.windows, *installed_.current());
  const std::lock_guard lock(mutex_);
  latest_ = made;
  madeAt_ = stamp;
  stale_ = changes != changes_;
  return made;
}

X11Applications::Snapshot X11Applications::latest() {
  {
    const std::lock_guard lock(mutex_);
    if (!stale_) {
      return latest_;
    }
  }
  return refresh();
}

X11Applications::Snapshot X11Applications::present() {
  const std::lock_guard lock(mutex_);
  return !stale_ && moment_.lasts(madeAt_) ? latest_ : nullptr;
}

xcb_window_t X11Applications::activeWindow() {
  const auto reading = present();
  return reading == nullptr ? glance_.present()->activeWindow : reading->screen.active;
}

void X11Applications::invalidate() {
  const std::lock_guard lock(mutex_);
  stale_ = true;
  ++changes_;
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
  running.isHidden = isHidden(application.pid, present());
  return running;
}

void X11Applications::setHidden(ProcessID pid, std::vector<xcb_window_t> windows) {
  const std::lock_guard lock(mutex_);
  hidden_[pid] = std::move(windows);
}

std::vector<xcb_window_t> X11Applications::takeHidden(ProcessID pid) {
  const std::lock_guard lock(mutex_);
  const auto node = hidden_.extract(pid);
  return node.empty() ? std::vector<xcb_window_t>() : std::move(node.mapped());
}

/// Whether it was hidden and the user has not got a window of it back since.
bool X11Applications::isHidden(ProcessID pid, const Snapshot& present) {
  std::vector<xcb_window_t> windows;
  {
    const std::lock_guard lock(mutex_);
    const auto found = hidden_.find(pid);
    if (found == hidden_.end()) {
      return false;
    }
    windows = found->second;
  }
  bool any = false;
  for (const auto number : windows) {
    const auto read = present == nullptr ? reader_.read(number) : std::nullopt;
    const auto* window = present != nullptr ? present->screen.find(number) : read ? &*read : nullptr;
    if (window != nullptr && !window->hidden) {
      return false;
    }
    any = any || window != nullptr;
  }
  return any;
}

}  // namespace tallowin
