#include "core/shown_spaces.h"

namespace tallowin {

ShownSpace shownSpace(const Space& space, const SpaceStore& store) {
  return {space.id, store.displayName(space), space.desktopNumber, store.symbol(space)};
}

std::map<std::string, ShownSpace> shownActiveSpaces(const SpaceSnapshot& snapshot, const SpaceStore& store) {
  std::map<std::string, ShownSpace> shown;
  for (const auto& space : snapshot.activeSpaces()) {
    shown.emplace(space.displayID, shownSpace(space, store));
  }
  return shown;
}

}  // namespace tallowin
