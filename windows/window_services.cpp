#include "windows/window_services.h"

namespace tallowin {

WindowServices::WindowServices(const ProgramServices& services, SpaceSwitcher& switcher,
                               std::function<void(const Space&)> switchTo)
    : contents(services),
      mover(services, switcher),
      focusMemory(services, contents, mover),
      spaceLock(services, contents, mover, switchTo),
      appRules(services, mover),
      minimizer(services.windows),
      scratchpad(services, contents, mover),
      marks(services, mover, switchTo),
      layouts(services, contents, mover),
      reconnect(services, contents, layouts),
      restartOffer(services, layouts),
      savedSpaces(services, contents),
      management(services) {
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
