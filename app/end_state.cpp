#include "app/end_state.h"

namespace tallowin {

namespace {

using Json = nlohmann::ordered_json;

template <typename Value>
Json orNull(const std::optional<Value>& value) {
  return value ? Json(*value) : Json();
}

Json describe(const Space& space) {
  return {{"id", space.id},
          {"managedID", space.managedID},
          {"desktopNumber", orNull(space.desktopNumber)},
          {"indexOnDisplay", space.indexOnDisplay},
          {"isFullscreen", space.isFullscreen},
          {"fullscreenPID", orNull(space.fullscreenPID)}};
}

Json describe(const DisplaySpaces& display) {
  auto spaces = Json::array();
  for (const auto& space : display.spaces) {
    spaces.push_back(describe(space));
  }
  return {{"id", display.id},
          {"isMenuBarDisplay", display.isMenuBarDisplay},
          {"activeSpaceID", orNull(display.activeSpaceID)},
          {"spaces", std::move(spaces)}};
}

Json describe(const std::vector<DisplaySpaces>& displays) {
  auto list = Json::array();
  for (const auto& display : displays) {
    list.push_back(describe(display));
  }
  return list;
}

}  // namespace

Json endState(const std::optional<std::vector<DisplaySpaces>>& displays, Preferences& preferences) {
  auto set = Json::object();
  for (const auto& [key, value] : preferences.persistentDomain()) {
    set[key] = value;
  }
  return {{"snapshot", displays ? describe(*displays) : Json()}, {"preferences", std::move(set)}};
}

}  // namespace tallowin
