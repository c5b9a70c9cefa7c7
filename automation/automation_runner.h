#pragma once

#include <functional>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "automation/browser_profiles.h"
#include "base/delayed_steps.h"
#include "base/settings.h"
#include "core/space.h"
#include "core/space_automation.h"
#include "core/space_store.h"
#include "platform/events.h"
#include "platform/folders.h"
#include "platform/log.h"
#include "platform/processes.h"
#include "platform/system.h"
#include "platform/workspace.h"

namespace tallowin {

/// Does what the user wants done when a Space is left and entered. Nothing that goes wrong is told but in the log. Main
/// thread only.
class AutomationRunner {
 public:
  struct Services {
    const SpaceStore& store;
    Workspace& workspace;
    Processes& processes;
    Events& events;
    System& system;
    MainQueue& mainQueue;
    const Folders& folders;
    const Settings& settings;
    Log& log;
  };
  /// Whether a Space has no windows.
  using IsSpaceEmpty = std::function<bool(const Space&)>;
  /// The applications with a window on a Space.
  using AppsOnSpace = std::function<std::set<ProcessID>(const Space&)>;

  AutomationRunner(Services services, IsSpaceEmpty isSpaceEmpty, AppsOnSpace appsOnSpace);
  AutomationRunner(const AutomationRunner&) = delete;
  AutomationRunner& operator=(const AutomationRunner&) = delete;

  /// To be called once for every change of the active Space; without `from` at the start. Programs are started at once;
  /// the rest follows within half a second, whatever Space is active then. Does nothing while the setting
  /// "runAutomations" is off.
  void spaceChanged(const std::optional<Space>& from, const Space& to);

  /// Opens the applications and URLs of an automation now, whatever its conditions.
  void launch(const SpaceAutomation& automation);

  /// The names of the user's shortcuts, sorted; none when they cannot be had. Blocks until the tool that lists them has
  /// ended.
  [[nodiscard]] std::vector<std::string> availableShortcuts();

 private:
  void leave(const Space& space, const SpaceAutomation& automation);
  void enter(const Space& space, const SpaceAutomation& automation);
  /// Whether the conditions for opening applications and URLs on entering are met; then the Space counts as launched.
  [[nodiscard]] bool mayLaunch(const Space& space, const SpaceAutomation& automation);

  void runShortcut(const std::string& name);
  void runScript(const std::string& command, const Space& space);
  void run(const ProcessRequest& request);

  const Services services_;
  const IsSpaceEmpty isSpaceEmpty_;
  const AppsOnSpace appsOnSpace_;
  const BrowserProfiles browserProfiles_;

  std::set<std::string> launched_;  ///< ids of the Spaces whose applications were opened since the start
  DelayedSteps steps_;
};

}  // namespace tallowin
