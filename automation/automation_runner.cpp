#include "automation/automation_runner.h"

#include <algorithm>
#include <chrono>
#include <utility>

#include "automation/keystroke.h"
#include "automation/openable_url.h"
#include "automation/trimmed_parts.h"
#include "base/unicode.h"

namespace tallowin {

namespace {

using namespace std::chrono_literals;

constexpr auto automationRunnerCategory = "Automation";
constexpr auto shell = "/bin/zsh";
constexpr auto shortcutsTool = "/usr/bin/shortcuts";

// From the change of the Space on, so that the order is: browser, applications and URLs, hiding, keystroke.
constexpr auto browserDelay = 300ms;
constexpr auto launchDelay = 350ms;
constexpr auto hidingDelay = 400ms;
constexpr auto keystrokeDelay = 450ms;

bool isSet(const std::optional<std::string>& text) {
  return !text.value_or("").empty();
}

}  // namespace

void BrowserProfiles::open(std::string_view bundleIdentifier, const std::string& profile) const {
  const auto application = workspace_.URLForApplicationWithBundleIdentifier(bundleIdentifier);
  if (!application) {
    return;
  }
  OpenConfiguration configuration;
  configuration.createsNewApplicationInstance = false;
  configuration.arguments = {"--profile-directory=" + profile};
  workspace_.openApplicationAtURL(*application, configuration, [](const auto& /*result*/) {});
}

void hideOtherApps(Workspace& workspace, const std::set<ProcessID>& kept, ProcessID own) {
  for (const auto& application : workspace.runningApplications()) {
    const bool hides = application.activationPolicy == ActivationPolicy::regular && !kept.contains(application.pid) &&
                       application.pid != own && application.bundleIdentifier != "com.apple.finder";
    if (hides) {
      workspace.hide(application.pid);
    }
  }
}

AutomationRunner::AutomationRunner(Services services, IsSpaceEmpty isSpaceEmpty, AppsOnSpace appsOnSpace)
    : services_(services),
      isSpaceEmpty_(std::move(isSpaceEmpty)),
      appsOnSpace_(std::move(appsOnSpace)),
      browserProfiles_(services.workspace),
      steps_(services.mainQueue) {}

void AutomationRunner::spaceChanged(const std::optional<Space>& from, const Space& to) {
  if (!services_.settings.get(setting::runAutomations)) {
    return;
  }
  if (from) {
    if (const auto automation = services_.store.meta(from->id).automation) {
      leave(*from, *automation);
    }
  }
  if (const auto automation = services_.store.meta(to.id).automation) {
    enter(to, *automation);
  }
}

void AutomationRunner::leave(const Space& space, const SpaceAutomation& automation) {
  if (isSet(automation.shortcutOnLeave)) {
    runShortcut(*automation.shortcutOnLeave);
  }
  if (isSet(automation.scriptOnLeave)) {
    runScript(*automation.scriptOnLeave, space);
  }
}

void AutomationRunner::enter(const Space& space, const SpaceAutomation& automation) {
  if (mayLaunch(space, automation)) {
    steps_.after(launchDelay, [this, automation] { launch(automation); });
  }
  if (automation.browserApp && isSet(automation.browserProfile)) {
    steps_.after(browserDelay, [this, browser = *automation.browserApp, profile = *automation.browserProfile] {
      browserProfiles_.open(browser, profile);
    });
  }
  if (isSet(automation.keystrokeOnEnter)) {
    steps_.after(keystrokeDelay,
                 [this, text = *automation.keystrokeOnEnter] { Keystroke::send(text, services_.events); });
  }
  if (automation.hideOtherApps) {
    steps_.after(hidingDelay, [this, kept = appsOnSpace_(space)] {
      hideOtherApps(services_.workspace, kept, services_.system.processIdentifier());
    });
  }
  if (isSet(automation.shortcutOnEnter)) {
    runShortcut(*automation.shortcutOnEnter);
  }
  if (isSet(automation.scriptOnEnter)) {
    runScript(*automation.scriptOnEnter, space);
  }
}

bool AutomationRunner::mayLaunch(const Space& space, const SpaceAutomation& automation) {
  if (automation.launchOnlyIfEmpty && !isSpaceEmpty_(space)) {
    return false;
  }
  const bool first = launched_.insert(space.id).second;
  return first || !automation.launchOnce;
}

void AutomationRunner::launch(const SpaceAutomation& automation) {
  for (const auto& path : automation.launchApps) {
    OpenConfiguration configuration;
    configuration.activates = true;
    services_.workspace.openApplicationAtURL(path, configuration, [&log = services_.log, path](const auto& result) {
      if (!result) {
        log.error(automationRunnerCategory, "launch " + path + ": " + result.error());
      }
    });
  }
  for (const auto& text : automation.openURLs) {
    if (const auto url = openableURL(text, services_.folders.home)) {
      services_.workspace.openURL(*url);
    }
  }
}

std::vector<std::string> AutomationRunner::availableShortcuts() {
  const auto output = services_.processes.run({shortcutsTool, {"list"}, {}});
  auto names = trimmedParts(output.value_or(""), "\r\n");
  std::erase_if(names, [](const std::string& name) { return name.empty() || !isValidUTF8(name); });
  std::ranges::sort(names);
  return names;
}

void AutomationRunner::runShortcut(const std::string& name) {
  run({shortcutsTool, {"run", name}, {}});
}

void AutomationRunner::runScript(const std::string& command, const Space& space) {
  const auto number = space.desktopNumber ? std::to_string(*space.desktopNumber) : "";
  run({shell,
       {"-lc", command},
       {{"TALLOWIN_SPACE_NAME", services_.store.displayName(space)},
        {"TALLOWIN_SPACE_NUMBER", number},
        {"TALLOWIN_SPACE_ID", space.id}}});
}

void AutomationRunner::run(const ProcessRequest& request) {
  if (const auto started = services_.processes.launch(request); !started) {
    services_.log.error(automationRunnerCategory, "run " + request.executable + ": " + started.error());
  }
}

}  // namespace tallowin
