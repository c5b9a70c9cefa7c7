#include "core/space_list.h"

#include "base/text_table.h"

namespace tallowin {

std::string desktopNumberText(const Space& space) {
  return space.desktopNumber ? std::to_string(*space.desktopNumber) : "-";
}

std::string spaceList(const SpaceSnapshot& snapshot, const SpaceStore& store) {
  using enum TextTable::Alignment;
  TextTable table({{left}, {right, 1}, {left}, {left}});
  for (const auto& display : snapshot.displays) {
    for (const auto& space : display.spaces) {
      table.add({space.isActive ? "*" : "", desktopNumberText(space), store.displayName(space),
                 snapshot.displays.size() > 1 ? display.id : ""});
    }
  }
  return table.text();
}

}  // namespace tallowin
