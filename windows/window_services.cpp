#include "windows/window_services.h"

namespace tallowin {

WindowServices::WindowServices(const ProgramServices& services, SpaceSwitcher& switcher,
                               std::function<void(const Space&)> switchTo)
    : contents(services),
      mover(services, switcher),
      focusMemory(services, contents, mover),
      spaceLock(services),
      pulledAway(services, contents, mover, switchTo),
      appRules(services, mover),
      minimizer(services.windows),
      scratchpad(services, contents, mover),
      marks(services.globalHotKeys, services.mainQueue),
      markCommands(services, marks, mover, switchTo),
      layouts(services, contents, mover),
      layoutCommands(layouts, services.toasts),
      reconnect(services, contents, layouts),
      restartOffer(services, layouts),
      savedSpaces(services, contents),
      savedSpaceCommands(savedSpaces, services.toasts),
      management(services) {
  spaceLock.onPulledAway = [this, &watcher = services.watcher](const Space& left,
                                                               const RunningApplication& application) {
    pulledAway.pulledAway(left, application, watcher.latest());
  };
  contents.onChange = [this] { mover.windowsChanged(); };
}

std::set<ProcessID> WindowServices::appsOn(const Space& space) {
  if (!contents.published()) {
    contents.readNow();
  }
  std::set<ProcessID> pids;
  for (const auto& app : contents.apps(space.managedID)) {
    pids.insert(app.pid);
  }
  return pids;
}

}  // namespace tallowin
