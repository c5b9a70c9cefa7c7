#include "platform/simulated/simulated_system.h"

namespace tallowin {

std::string SimulatedSystem::operatingSystemVersionString() {
  const auto& version = state_.systemVersion;
  return "Version " + std::to_string(version.major) + "." + std::to_string(version.minor) +
         (version.patch > 0 ? "." + std::to_string(version.patch) : "") + " (simulated)";
}

PropertyList SimulatedSystem::CGSessionCopyCurrentDictionary() {
  PropertyList dictionary = {{"kCGSSessionOnConsoleKey", true}};
  // As on the real system, the key is there only while the screen is locked.
  if (state_.screenLocked) {
    dictionary["CGSSessionScreenIsLocked"] = true;
  }
  return dictionary;
}

}  // namespace tallowin
