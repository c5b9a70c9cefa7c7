#include "app/resident_mode.h"

#include "app/app_delegate.h"

namespace tallowin {

int runResident(const Platform& platform, const Settings& settings, const SpaceProvider& provider,
                const std::optional<std::string>& url, std::ostream& error) {
  AppDelegate delegate(platform, settings, provider, error);
  delegate.applicationDidFinishLaunching();
  if (url) {
    static_cast<void>(delegate.handleURLEvent(*url));
  }
  return platform.runLoop.run();
}

}  // namespace tallowin
