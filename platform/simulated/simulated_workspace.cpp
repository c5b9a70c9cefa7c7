#include "platform/simulated/simulated_workspace.h"

#include <algorithm>

namespace tallowin {

namespace {

RunningApplication running(const SimulatedApplication& application) {
  return {application.pid.value_or(0),  application.bundleIdentifier, application.name,
          application.activationPolicy, application.isActive,         application.isHidden};
}

}  // namespace

std::vector<RunningApplication> SimulatedWorkspace::runningApplications() {
  std::vector<RunningApplication> result;
  for (const auto& application : state_.applications) {
    if (application.pid) {
      result.push_back(running(application));
    }
  }
  return result;
}

std::optional<RunningApplication> SimulatedWorkspace::runningApplicationWithProcessIdentifier(ProcessID pid) {
  const auto* const found = state_.application(pid);
  return found != nullptr ? std::optional(running(*found)) : std::nullopt;
}

std::vector<RunningApplication> SimulatedWorkspace::runningApplicationsWithBundleIdentifier(std::string_view bundle) {
  auto result = runningApplications();
  std::erase_if(result, [&](const RunningApplication& application) { return application.bundleIdentifier != bundle; });
  return result;
}

std::optional<RunningApplication> SimulatedWorkspace::frontmostApplication() {
  const auto all = runningApplications();
  const auto found = std::ranges::find(all, true, &RunningApplication::isActive);
  return found == all.end() ? std::nullopt : std::optional(*found);
}

bool SimulatedWorkspace::hide(ProcessID pid) {
  journal_.record("hide", {{"pid", pid}});
  return setHidden(pid, true);
}

bool SimulatedWorkspace::unhide(ProcessID pid) {
  journal_.record("unhide", {{"pid", pid}});
  return setHidden(pid, false);
}

bool SimulatedWorkspace::setHidden(ProcessID pid, bool hidden) {
  auto* const application = state_.application(pid);
  if (application == nullptr) {
    return false;
  }
  application->isHidden = hidden;
  onChange();
  if (hidden && application->isActive) {
    activateFrontmostOwner();
  }
  return true;
}

/// Whoever owns the frontmost window that is left to be seen takes over.
void SimulatedWorkspace::activateFrontmostOwner() {
  const auto next = std::ranges::find_if(state_.windows, [&](const auto& window) { return state_.isOnScreen(window); });
  if (next != state_.windows.end()) {
    activate(next->pid);
  }
}

bool SimulatedWorkspace::activateWithOptions(ProcessID pid) {
  journal_.record("activateWithOptions", {{"pid", pid}});
  return activate(pid);
}

std::optional<std::filesystem::path> SimulatedWorkspace::URLForApplicationWithBundleIdentifier(
    std::string_view bundle) {
  const auto isMeant = [&](const SimulatedApplication& candidate) { return candidate.bundleIdentifier == bundle; };
  const auto found = std::ranges::find_if(state_.applications, isMeant);
  return found == state_.applications.end() ? std::nullopt : std::optional<std::filesystem::path>(found->path());
}

void SimulatedWorkspace::openApplicationAtURL(const std::filesystem::path& application,
                                              const OpenConfiguration& configuration, OpenCompletion completion) {
  journal_.record("openApplicationAtURL",
                  {{"application", application.string()},
                   {"activates", configuration.activates},
                   {"createsNewApplicationInstance", configuration.createsNewApplicationInstance},
                   {"arguments", configuration.arguments}});
  queue_.async([this, application, configuration, completion = std::move(completion)] {
    open(application, configuration, completion);
  });
}

void SimulatedWorkspace::open(const std::filesystem::path& path, const OpenConfiguration& configuration,
                              const OpenCompletion& completion) {
  const auto isThere = [&](const SimulatedApplication& candidate) { return candidate.path() == path; };
  const auto found = std::ranges::find_if(state_.applications, isThere);
  if (found == state_.applications.end()) {
    completion(std::unexpected("The application cannot be found."));
    return;
  }
  auto pid = found->pid;
  if (!pid || configuration.createsNewApplicationInstance) {
    auto started = *found;
    started.isHidden = false;
    ProcessID next = 1000;
    while (state_.application(next) != nullptr) {
      ++next;
    }
    started.pid = pid = next;
    launch(std::move(started));
  }
  if (configuration.activates) {
    activate(*pid);
  }
  completion({});
}

bool SimulatedWorkspace::openURL(std::string_view url) {
  journal_.record("openURL", {{"url", url}});
  return true;
}

bool SimulatedWorkspace::activate(ProcessID pid) {
  if (state_.application(pid) == nullptr) {
    return false;
  }
  for (auto& application : state_.applications) {
    application.isActive = application.pid == pid;
    application.isHidden = application.isHidden && !application.isActive;
  }
  std::ranges::stable_partition(state_.windows, [&](const SimulatedWindow& window) { return window.pid == pid; });
  tell(NotificationName::NSWorkspaceDidActivateApplicationNotification, pid);
  return true;
}

void SimulatedWorkspace::launch(SimulatedApplication application) {
  const auto pid = application.pid.value_or(0);
  application.isActive = false;
  if (state_.application(pid) != nullptr) {
    return;
  }
  const auto installed = std::ranges::find_if(state_.applications, [&](const SimulatedApplication& candidate) {
    return !candidate.pid && candidate.name == application.name;
  });
  if (installed != state_.applications.end()) {
    *installed = std::move(application);
  } else {
    state_.applications.push_back(std::move(application));
  }
  tell(NotificationName::NSWorkspaceDidLaunchApplicationNotification, pid);
}

bool SimulatedWorkspace::quit(ProcessID pid) {
  auto* const application = state_.application(pid);
  if (application == nullptr) {
    return false;
  }
  const bool wasActive = application->isActive;
  application->pid.reset();
  application->isActive = application->isHidden = false;
  std::erase_if(state_.windows, [&](const SimulatedWindow& window) { return window.pid == pid; });
  tell(NotificationName::NSWorkspaceDidTerminateApplicationNotification, pid);
  if (wasActive) {
    activateFrontmostOwner();
  }
  return true;
}

void SimulatedWorkspace::tell(NotificationName name, ProcessID pid) {
  notifications_.post({name, pid});
  onChange();
}

}  // namespace tallowin
