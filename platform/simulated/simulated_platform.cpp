#include "platform/simulated/simulated_platform.h"

namespace tallowin {

Platform simulatedPlatform(SimulatedDesktop& desktop, WindowServer& windowServer, Preferences& preferences,
                           Images& images, VirtualTime& time) {
  return {.windowServer = windowServer,
          .desktopNames = desktop.desktopNames(),
          .spacePlaces = desktop.spacePlaces(),
          .accessibility = desktop.accessibility(),
          .events = desktop.events(),
          .displays = desktop.displays(),
          .windowList = desktop.windowList(),
          .workspace = desktop.workspace(),
          .workspaceNotifications = desktop.workspaceNotifications(),
          .defaultNotifications = desktop.defaultNotifications(),
          .screenCapture = desktop.screenCapture(),
          .images = images,
          .preferences = preferences,
          .files = desktop.files(),
          .folders = desktop.folders(),
          .processes = desktop.processes(),
          .appleScript = desktop.appleScript(),
          .toasts = desktop.toasts(),
          .alerts = desktop.alerts(),
          .presentation = desktop.presentation(),
          .pasteboard = desktop.pasteboard(),
          .globalHotKeys = desktop.globalHotKeys(),
          .urlEvents = desktop.urlEvents(),
          .commandChannel = desktop.commandChannel(),
          .scriptEvents = desktop.scriptEvents(),
          .desktopService = desktop.desktopService(),
          .listeners = desktop.listeners(),
          .system = desktop.system(),
          .desktopFacts = desktop.desktopFacts(),
          .desktopKind = DesktopKind::driven,
          .mainQueue = time,
          .workQueues = time,
          .desktopQueues = time,
          .runLoop = time,
          .clock = time,
          .log = desktop.log()};
}

}  // namespace tallowin
