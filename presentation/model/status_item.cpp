#include "presentation/model/status_item.h"

#include <algorithm>

namespace tallowin {

namespace {

constexpr auto programName = "Tallowin";
constexpr std::size_t mostMarks = 12;

bool showsAllSpaces(MenuBarStyle style) {
  return style == MenuBarStyle::strip || style == MenuBarStyle::dots;
}

std::string textOf(const SpaceRow& active, MenuBarStyle style) {
  switch (style) {
    case MenuBarStyle::name:
      return active.name;
    case MenuBarStyle::number:
      return numberOf(active);
    case MenuBarStyle::numberAndName:
      return numberOf(active) + " " + active.name;
    case MenuBarStyle::iconOnly:
    case MenuBarStyle::strip:
    case MenuBarStyle::dots:
      break;
  }
  return "";
}

}  // namespace

std::string numberOf(const SpaceRow& space) {
  return space.desktopNumber ? std::to_string(*space.desktopNumber) : "–";
}

StatusItem statusItem(const std::vector<SpaceRow>& spaces, const StatusItemStyle& style) {
  StatusItem item;
  item.scrollSwitches = style.scrollSwitches;
  item.toolTip = programName;
  item.number = "–";
  if (showsAllSpaces(style.style)) {
    for (const auto& space : spaces) {
      if (item.marks.size() < mostMarks) {
        item.marks.push_back(
            {style.style == MenuBarStyle::strip ? numberOf(space) : "", space.colorHex, space.isActive});
      } else {
        ++item.more;
      }
    }
  }
  const auto active = std::ranges::find(spaces, true, &SpaceRow::isActive);
  if (active == spaces.end()) {
    item.text = showsAllSpaces(style.style) || style.style == MenuBarStyle::iconOnly ? "" : programName;
    return item;
  }
  item.text = textOf(*active, style.style);
  item.number = numberOf(*active);
  item.symbol = style.showsIcon || style.style == MenuBarStyle::iconOnly ? active->symbol : "";
  item.colorHex = active->colorHex;
  item.toolTip = numberOf(*active) + "  " + active->name;
  return item;
}

int WheelSteps::turned(int eighths, Time now) {
  using namespace std::chrono_literals;
  constexpr int notch = 120;
  if ((lastTurn_ && now - *lastTurn_ > 1s) || (rest_ > 0) != (eighths > 0)) {
    rest_ = 0;
  }
  lastTurn_ = now;
  rest_ += eighths;
  if (rest_ > -notch && rest_ < notch) {
    return 0;
  }
  const int step = rest_ > 0 ? -1 : 1;
  rest_ %= notch;
  if (lastStep_ && now - *lastStep_ < 150ms) {
    return 0;
  }
  lastStep_ = now;
  return step;
}

}  // namespace tallowin
