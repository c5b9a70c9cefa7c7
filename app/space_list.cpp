#include "app/space_list.h"

#include <algorithm>
#include <vector>

#include "base/unicode.h"

namespace tallowin {

namespace {

struct Row {
  bool isActive;
  std::string number;
  std::string name;
  std::string display;
};

std::string padding(std::size_t width, std::size_t used) {
  return std::string(width - std::min(width, used), ' ');
}

}  // namespace

std::string spaceList(const SpaceSnapshot& snapshot, const SpaceStore& store) {
  std::vector<Row> rows;
  std::size_t numberWidth = 1;
  std::size_t nameWidth = 0;
  for (const auto& display : snapshot.displays) {
    for (const auto& space : display.spaces) {
      rows.push_back({space.isActive, space.desktopNumber ? std::to_string(*space.desktopNumber) : "-",
                      printable(store.displayName(space)), printable(display.id)});
      numberWidth = std::max(numberWidth, rows.back().number.size());
      nameWidth = std::max(nameWidth, displayWidth(rows.back().name));
    }
  }
  std::string text;
  for (const auto& row : rows) {
    text += (row.isActive ? "* " : "  ") + padding(numberWidth, row.number.size()) + row.number + "  " + row.name;
    if (snapshot.displays.size() > 1) {
      text += padding(nameWidth, displayWidth(row.name)) + "  " + row.display;
    }
    text += '\n';
  }
  return text;
}

}  // namespace tallowin
