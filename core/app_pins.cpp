#include "core/app_pins.h"

#include <algorithm>
#include <vector>

namespace tallowin {

namespace {

std::vector<std::string> spacesPinning(const std::string& bundleID, const SpaceStore& store) {
  std::vector<std::string> ids;
  for (const auto& [id, meta] : store.metas()) {
    if (meta.automation &&
        std::ranges::find(meta.automation->pinnedApps, bundleID) != meta.automation->pinnedApps.end()) {
      ids.push_back(id);
    }
  }
  return ids;
}

}  // namespace

void pinApplication(const std::string& bundleID, const Space& space, SpaceStore& store) {
  unpinApplication(bundleID, store);
  auto automation = store.meta(space.id).automation.value_or(SpaceAutomation());
  automation.pinnedApps.push_back(bundleID);
  store.setAutomation(automation, space.id);
}

bool unpinApplication(const std::string& bundleID, SpaceStore& store) {
  const auto pinning = spacesPinning(bundleID, store);
  for (const auto& id : pinning) {
    auto automation = store.meta(id).automation.value_or(SpaceAutomation());
    std::erase(automation.pinnedApps, bundleID);
    store.setAutomation(automation, id);
  }
  return !pinning.empty();
}

}  // namespace tallowin
