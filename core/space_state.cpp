#include "core/space_state.h"

#include "base/date_text.h"

namespace tallowin {

namespace {

template <typename Value>
PropertyList orNull(const std::optional<Value>& value) {
  return value ? PropertyList(*value) : PropertyList();
}

}  // namespace

PropertyList spaceRecord(const Space& space, const SpaceStore& store, const AppNames& apps) {
  const auto meta = store.meta(space.id);
  return {{"id", space.id},
          {"name", store.displayName(space)},
          {"hasCustomName", store.hasCustomName(space)},
          {"display", space.displayID},
          {"isActive", space.isActive},
          {"isFullscreen", space.isFullscreen},
          {"symbol", store.symbol(space)},
          {"apps", apps(space)},
          {"number", orNull(space.desktopNumber)},
          {"color", orNull(meta.colorHex)},
          {"note", orNull(meta.note)}};
}

PropertyList stateRecord(const SpaceSnapshot& snapshot, const SpaceStore& store, const AppNames& apps, Date updatedAt) {
  auto spaces = PropertyList::array();
  for (const auto& space : snapshot.allSpaces()) {
    spaces.push_back(spaceRecord(space, store, apps));
  }
  const auto active = snapshot.activeSpace();
  return {{"version", 1},
          {"updatedAt", iso8601(updatedAt)},
          {"current", active ? PropertyList(active->id) : PropertyList()},
          {"spaces", std::move(spaces)}};
}

}  // namespace tallowin
