#include "app/resident_mode.h"

#include <string>

#include "core/space_watcher.h"

namespace tallowin {

namespace {

constexpr auto category = "AppDelegate";

std::string nameOf(const Space& space) {
  return space.desktopNumber ? "Desktop " + std::to_string(*space.desktopNumber) : "Full Screen";
}

}  // namespace

int runResident(const Platform& platform, const SpaceProvider& provider, std::ostream& error) {
  auto& log = platform.log;
  const auto health = platform.windowServer.CGSBridgeProbe();
  log.info(category, "bridge health: " + std::to_string(health.bits()));
  if (!health.healthy()) {
    error << "tallowin: there are no desktops to watch here yet; --platform simulated makes some up\n";
  }
  SpaceWatcher watcher({provider, platform.windowServer, platform.workspaceNotifications, platform.defaultNotifications,
                        platform.files, platform.folders, platform.mainQueue, log});
  watcher.onActiveSpaceChange = [&log](const std::optional<Space>& from, const Space& to) {
    log.info(category, "active Space: " + (from ? nameOf(*from) + " to " : "") + nameOf(to));
  };
  watcher.start();
  return platform.runLoop.run();
}

}  // namespace tallowin
