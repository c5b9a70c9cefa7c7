#include "app/resident_mode.h"

#include "app/app_delegate.h"

namespace tallowin {

int runResident(const Platform& platform, Storage& storage, const Settings& settings, const SpaceProvider& provider,
                const LaunchOptions& options, std::ostream& error) {
  AppDelegate delegate(platform, storage, settings, provider, options, error);
  delegate.applicationDidFinishLaunching();
  return platform.runLoop.run();
}

}  // namespace tallowin
