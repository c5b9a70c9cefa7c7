#include "windows/window_services.h"

namespace tallowin {

WindowServices::WindowServices(const Context& context)
    : texts(desktopTexts(context.platform.desktopKind())),
      contents({context.platform.desktop, context.platform.windows, context.platform.workspace,
                context.platform.workspaceNotifications, context.platform.system, context.platform.mainQueue,
                context.platform.desktopQueues}),
      mover({context.switcher, context.platform.desktop, context.platform.windows, context.platform.driven,
             context.platform.workspace, context.platform.events, context.platform.system, context.platform.mainQueue,
             context.platform.log}),
      focusMemory({context.platform.workspace, context.platform.desktop, context.platform.windows,
                   context.platform.system, mover, context.settings, context.platform.mainQueue}),
      spaceLock({context.platform.workspaceNotifications, context.platform.workspace, context.platform.system,
                 context.settings, context.platform.clock}),
      pulledAway({mover, contents, context.platform.workspace, context.platform.toasts, context.platform.mainQueue,
                  context.switchTo}),
      appRules({context.store, mover, context.settings, context.platform.log, texts}),
      minimizer(context.platform.windows),
      scratchpad({mover, contents, context.platform.workspace, context.settings, context.platform.log}),
      marks(context.platform.globalHotKeys, context.platform.mainQueue),
      markCommands(
          {marks, mover, context.platform.desktop, context.platform.toasts, context.watcher, context.switchTo}),
      layouts({context.watcher, mover, contents, context.platform.windows, context.platform.displays, context.storage,
               context.paths, context.settings, context.platform.mainQueue, context.platform.clock}),
      layoutCommands(layouts, context.platform.toasts),
      reconnect({layouts, contents, context.platform.displays, context.platform.defaultNotifications, context.settings,
                 context.platform.toasts, context.platform.mainQueue, context.watcher}),
      restartOffer({layouts, context.platform.alerts, context.platform.workspace, context.platform.system,
                    context.platform.mainQueue, context.platform.clock, texts, context.watcher}),
      savedSpaces({context.store, contents, context.platform.windows, context.platform.workspace, context.storage,
                   context.paths, context.platform.clock, context.platform.log},
                  context.browserTabs, [&system = context.platform.system] { return system.randomBits(); }),
      savedSpaceCommands(savedSpaces, context.platform.toasts),
      management({context.platform.asked, context.platform.driven, context.platform.workspace, context.platform.events,
                  context.platform.mainQueue}) {
  spaceLock.onPulledAway = [this, &watcher = context.watcher](const Space& left,
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
  const auto& apps = contents.appsBySpace().get();
  if (const auto found = apps.find(space.managedID); found != apps.end()) {
    for (const auto& app : found->second) {
      pids.insert(app.pid);
    }
  }
  return pids;
}

}  // namespace tallowin
