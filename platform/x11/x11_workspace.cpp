#include "platform/x11/x11_workspace.h"

#include <algorithm>
#include <fstream>
#include <iterator>

#include "platform/x11/x11_process_identity.h"

namespace tallowin {

namespace {

constexpr std::string_view dockIdentifier = "com.apple.dock";

RunningApplication dock() {
  RunningApplication application;
  application.pid = dockPid;
  application.bundleIdentifier = dockIdentifier;
  application.localizedName = "Dock";
  application.activationPolicy = ActivationPolicy::accessory;
  return application;
}

/// The window to make active with its application; 0 when it has no ordinary one.
xcb_window_t windowToActivate(const X11WindowSnapshot& screen, const X11Application& application) {
  xcb_window_t anywhere = 0;
  for (const auto number : application.windows) {
    const auto* window = screen.find(number);
    if (window == nullptr || window->layer != 0) {
      continue;
    }
    if (screen.isOnScreen(*window)) {
      return number;
    }
    anywhere = anywhere == 0 ? number : anywhere;
  }
  return anywhere;
}

}  // namespace

std::vector<RunningApplication> X11Workspace::runningApplications() {
  std::vector<RunningApplication> running;
  const auto snapshot = context_->applications.latest();
  for (const auto& application : snapshot->applications) {
    running.push_back(context_->applications.running(application));
  }
  return running;
}

std::optional<RunningApplication> X11Workspace::runningApplicationWithProcessIdentifier(ProcessID pid) {
  if (pid == dockPid) {
    return dock();
  }
  const auto snapshot = context_->applications.latest();
  const auto* application = snapshot->find(pid);
  return application == nullptr ? std::nullopt : std::optional(context_->applications.running(*application));
}

std::vector<RunningApplication> X11Workspace::runningApplicationsWithBundleIdentifier(std::string_view bundle) {
  if (bundle == dockIdentifier) {
    return {dock()};
  }
  std::vector<RunningApplication> running;
  const auto snapshot = context_->applications.latest();
  for (const auto& application : snapshot->applications) {
    if (application.bundleIdentifier == bundle) {
      running.push_back(context_->applications.running(application));
    }
  }
  return running;
}

std::optional<RunningApplication> X11Workspace::frontmostApplication() {
  const auto active = context_->applications.activeWindow();
  const auto snapshot = active == 0 ? nullptr : context_->applications.latest();
  const auto* application = snapshot == nullptr ? nullptr : snapshot->owner(active);
  return application == nullptr ? std::nullopt : std::optional(context_->applications.running(*application));
}

bool X11Workspace::hide(ProcessID pid) {
  const auto snapshot = context_->applications.refresh();
  const auto* application = snapshot->find(pid);
  if (application == nullptr) {
    return false;
  }
  std::vector<xcb_window_t> shown;
  for (const auto number : application->windows) {
    const auto* window = snapshot->screen.find(number);
    if (window->layer == 0 && !window->hidden) {
      shown.push_back(number);
    }
  }
  if (!shown.empty()) {
    context_->actions.minimize(shown);
    context_->applications.setHidden(pid, std::move(shown));
  }
  return true;
}

bool X11Workspace::unhide(ProcessID pid) {
  const auto snapshot = context_->applications.latest();
  for (const auto window : context_->applications.takeHidden(pid)) {
    context_->actions.restore(window);
  }
  return snapshot->find(pid) != nullptr;
}

bool X11Workspace::activateWithOptions(ProcessID pid) {
  const auto snapshot = context_->applications.refresh();
  const auto* application = snapshot->find(pid);
  if (application == nullptr) {
    return false;
  }
  auto window = windowToActivate(snapshot->screen, *application);
  if (const auto main = context_->mainWindows.extract(pid); !main.empty() && snapshot->screen.find(main.mapped())) {
    window = main.mapped();
  }
  return window != 0 && context_->actions.activate(window);
}

std::optional<std::filesystem::path> X11Workspace::URLForApplicationWithBundleIdentifier(std::string_view bundle) {
  return launcher_.find(bundle);
}

void X11Workspace::openApplicationAtURL(const std::filesystem::path& application,
                                        const OpenConfiguration& configuration, OpenCompletion completion) {
  const auto file = launcher_.resolve(application);
  const bool another = configuration.createsNewApplicationInstance || !configuration.arguments.empty();
  const auto running = another ? std::nullopt : processOf(file);
  std::expected<void, std::string> result;
  if (running && configuration.opensNewWindow) {
    result = launcher_.openNewWindow(file);
  } else if (!running || (configuration.activates && !activateWithOptions(*running))) {
    result = launcher_.open(file, configuration.arguments);
  }
  queue_.async([result = std::move(result), completion = std::move(completion)] { completion(result); });
}

/// The process of an application that runs.
std::optional<ProcessID> X11Workspace::processOf(const std::filesystem::path& application) {
  const auto snapshot = context_->applications.latest();
  const auto found = std::ranges::find_if(snapshot->applications, [&](const X11Application& running) {
    return launcher_.find(running.bundleIdentifier) == application;
  });
  return found != snapshot->applications.end() ? std::optional(found->pid) : std::nullopt;
}

bool X11Workspace::openURL(std::string_view url) {
  return launcher_.openURL(std::string(url));
}

std::optional<std::string> X11Workspace::iconForFile(const std::filesystem::path& file) {
  const auto picture = launcher_.iconOf(file);
  if (!picture) {
    return std::nullopt;
  }
  std::ifstream bytes(*picture, std::ios::binary);
  return std::string{std::istreambuf_iterator<char>(bytes), std::istreambuf_iterator<char>()};
}

}  // namespace tallowin
