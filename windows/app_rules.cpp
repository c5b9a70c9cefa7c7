#include "windows/app_rules.h"

namespace tallowin {

RulesByApplication appRules(const SpaceSnapshot& snapshot, const SpaceStore& store) {
  RulesByApplication rules;
  for (const auto& space : snapshot.allSpaces()) {
    for (const auto& bundleID : store.meta(space.id).automation.value_or(SpaceAutomation()).pinnedApps) {
      rules.insert_or_assign(bundleID, space);
    }
  }
  return rules;
}

void AppRules::apply(const std::vector<WindowInfo>& newWindows, const SpaceSnapshot& snapshot) {
  if (newWindows.empty() || !services_.settings.get(setting::applyAppRules)) {
    return;
  }
  const auto rules = appRules(snapshot, services_.store);
  for (const auto& window : newWindows) {
    const auto rule = window.bundleID ? rules.find(*window.bundleID) : rules.end();
    if (rule == rules.end() || !placed_.insert(window.id).second) {
      continue;
    }
    if (window.spaceID != rule->second.managedID) {
      move(window, rule->second, snapshot);
    }
  }
}

void AppRules::move(const WindowInfo& window, const Space& space, const SpaceSnapshot& snapshot) {
  services_.mover.move({window.id, window.pid, window.frame}, space, snapshot, false, false,
                       [&log = services_.log, &texts = services_.texts](WindowMover::Result result) {
                         if (!result) {
                           log.error("AppRules",
                                     "rule move failed: " + std::string(description(result.error(), texts)));
                         }
                       });
}

}  // namespace tallowin
