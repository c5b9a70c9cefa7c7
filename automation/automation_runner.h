#pragma once

#include <functional>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "base/delayed_steps.h"
#include "base/settings.h"
#include "core/space.h"
#include "core/space_meta.h"
#include "core/space_store.h"
#include "platform/events.h"
#include "platform/folders.h"
#include "platform/identifiers.h"
#include "platform/log.h"
#include "platform/processes.h"
#include "platform/system.h"
#include "platform/workspace.h"

namespace tallowin {

/// A browser with profiles, for whoever lets the user choose one.
struct ProfileBrowser {
  std::string_view name;  ///< as the user knows it
  std::string_view bundleIdentifier;
};

/// Opens Chromium-based browsers in one of their profiles. Main thread only.
class BrowserProfiles {
 public:
  explicit BrowserProfiles(Workspace& workspace) : workspace_(workspace) {}

  /// In the order in which they are offered.
  static constexpr ProfileBrowser browsers[] = {
      {"Google Chrome", "com.google.Chrome"},      {"Brave", "com.brave.Browser"},
      {"Microsoft Edge", "com.microsoft.edgemac"}, {"Vivaldi", "com.vivaldi.Vivaldi"},
      {"Arc", "company.thebrowser.Browser"},
  };

  /// `profile` is the name of the profile's folder, such as "Profile 1". Does nothing when the browser is not
  /// installed; whether it opens is not looked at.
  void open(std::string_view bundleIdentifier, const std::string& profile) const;

 private:
  Workspace& workspace_;
};

/// Hides the running applications with a Dock icon that are not among `kept`, but never this program (`own`) nor the
/// Finder. Main thread only.
void hideOtherApps(Workspace& workspace, const std::set<ProcessID>& kept, ProcessID own);

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
