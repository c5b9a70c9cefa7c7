#include "platform/x11/x11_workspace.h"

#include <algorithm>
#include <fstream>
#include <iterator>

namespace tallowin {

namespace {

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
  const auto snapshot = applications_.latest();
  for (const auto& application : snapshot->applications) {
    running.push_back(applications_.running(application));
  }
  return running;
}

std::optional<RunningApplication> X11Workspace::runningApplicationWithProcessIdentifier(ProcessID pid) {
  const auto snapshot = applications_.latest();
  const auto* application = snapshot->find(pid);
  return application == nullptr ? std::nullopt : std::optional(applications_.running(*application));
}

std::vector<RunningApplication> X11Workspace::runningApplicationsWithBundleIdentifier(std::string_view bundle) {
  std::vector<RunningApplication> running;
  const auto snapshot = applications_.latest();
  for (const auto& application : snapshot->applications) {
    if (application.bundleIdentifier == bundle) {
      running.push_back(applications_.running(application));
    }
  }
  return running;
}

std::optional<RunningApplication> X11Workspace::frontmostApplication() {
  const auto active = applications_.activeWindow();
  const auto snapshot = active == 0 ? nullptr : applications_.latest();
  const auto* application = snapshot == nullptr ? nullptr : snapshot->owner(active);
  return application == nullptr ? std::nullopt : std::optional(applications_.running(*application));
}

bool X11Workspace::hide(ProcessID pid) {
  const auto snapshot = applications_.refresh();
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
    actions_.minimize(shown);
    applications_.setHidden(pid, std::move(shown));
  }
  return true;
}

bool X11Workspace::unhide(ProcessID pid) {
  const auto snapshot = applications_.latest();
  for (const auto window : applications_.takeHidden(pid)) {
    actions_.restore(window);
  }
  return snapshot->find(pid) != nullptr;
}

bool X11Workspace::activateWithOptions(ProcessID pid) {
  const auto snapshot = applications_.refresh();
  const auto* application = snapshot->find(pid);
  if (application == nullptr) {
    return false;
  }
  auto window = windowToActivate(snapshot->screen, *application);
  if (const auto main = applications_.takeMainWindow(pid); snapshot->screen.find(main) != nullptr) {
    window = main;
  }
  return window != 0 && actions_.activate(window);
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
  const auto snapshot = applications_.latest();
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
