#include "automation/browser_profiles.h"

namespace tallowin {

void BrowserProfiles::open(std::string_view bundleIdentifier, const std::string& profile) const {
  const auto application = workspace_.URLForApplicationWithBundleIdentifier(bundleIdentifier);
  if (!application) {
    return;
  }
  OpenConfiguration configuration;
  configuration.createsNewApplicationInstance = false;
  configuration.arguments = {"--profile-directory=" + profile};
  workspace_.openApplicationAtURL(*application, configuration, [](const auto& /*result*/) {});
}

}  // namespace tallowin
