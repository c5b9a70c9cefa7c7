#include "platform/simulated/simulated_platform.h"

namespace tallowin {

Platform simulatedPlatform(SimulatedDesktop& simulated, Desktop& desktop, DrivenServices& driven, Windows& windows,
                           Preferences& preferences, Images& images, VirtualTime& time) {
  return {.desktop = desktop,
          .asked = nullptr,
          .driven = &driven,
          .windows = windows,
          .desktopNames = simulated.desktopNames(),
          .spacePlaces = simulated.spacePlaces(),
          .events = simulated.events(),
          .displays = simulated.displays(),
          .workspace = simulated.workspace(),
          .workspaceNotifications = simulated.workspaceNotifications(),
          .defaultNotifications = simulated.defaultNotifications(),
          .screenCapture = simulated.screenCapture(),
          .images = images,
          .preferences = preferences,
          .files = simulated.files(),
          .folders = simulated.folders(),
          .processes = simulated.processes(),
          .appleScript = simulated.appleScript(),
          .toasts = simulated.toasts(),
          .alerts = simulated.alerts(),
          .presentation = simulated.presentation(),
          .pasteboard = simulated.pasteboard(),
          .globalHotKeys = simulated.globalHotKeys(),
          .urlEvents = simulated.urlEvents(),
          .commandChannel = simulated.commandChannel(),
          .scriptEvents = simulated.scriptEvents(),
          .desktopService = simulated.desktopService(),
          .listeners = simulated.listeners(),
          .system = simulated.system(),
          .desktopFacts = simulated.desktopFacts(),
          .desktopKind = DesktopKind::driven,
          .mainQueue = time,
          .workQueues = time,
          .desktopQueues = time,
          .runLoop = time,
          .clock = time,
          .log = simulated.log()};
}

}  // namespace tallowin
