#include "presentation/model/status_item.h"

#include <gtest/gtest.h>

namespace tallowin {
namespace {

using namespace std::chrono_literals;
using Style = MenuBarStyle;

SpaceRow space(std::optional<std::int64_t> number, std::string name) {
  return {.id = name, .name = name, .desktopNumber = number, .symbol = "star"};
}

std::string marksOf(const StatusItem& item) {
  std::string text;
  for (const auto& mark : item.marks) {
    text += (mark.isActive ? "*" : ".") + mark.text;
  }
  return text + (item.more > 0 ? "+" + std::to_string(item.more) : "");
}

TEST(StatusItem, SaysWhereTheUserIsInEachStyle) {
  std::vector<SpaceRow> spaces = {space(1, "Code"), space(2, "Mail"), space(std::nullopt, "Film")};
  const struct {
    Style style;
    bool showsIcon;
    std::optional<std::size_t> active;
    std::string seen;  // text | symbol or number | marks | tool tip
  } cases[] = {
      {Style::name, true, 1, "Mail | star || 2  Mail"},
      {Style::name, false, 1, "Mail | 2 || 2  Mail"},
      {Style::number, true, 2, "– | star || –  Film"},
      {Style::numberAndName, false, 0, "1 Code | 1 || 1  Code"},
      {Style::iconOnly, false, 1, " | star || 2  Mail"},
      {Style::strip, false, 2, " | – |.1.2*–| –  Film"},
      {Style::dots, false, 0, " | 1 |*..| 1  Code"},
      {Style::name, true, std::nullopt, "Tallowin | – || Tallowin"},
      {Style::dots, true, std::nullopt, " | – |...| Tallowin"},
  };
  for (const auto& each : cases) {
    for (std::size_t i = 0; i < spaces.size(); ++i) {
      spaces[i].isActive = i == each.active;
    }
    const auto item = statusItem(spaces, {each.style, each.showsIcon, true});
    EXPECT_EQ(item.text + " | " + (item.symbol.empty() ? item.number : item.symbol) + " |" + marksOf(item) + "| " +
                  item.toolTip,
              each.seen);
  }
  const std::vector<SpaceRow> many(15, space(1, "Code"));
  EXPECT_EQ(marksOf(statusItem(many, {Style::dots, true, true})), "............+3");
}

TEST(WheelSteps, StepOncePerNotchAndNotTooOften) {
  WheelSteps wheel;
  const struct {
    int eighths;
    WheelSteps::Time at;
    int step;
  } story[] = {
      {120, 0ms, -1},    {-120, 149ms, 0}, {-120, 299ms, 1},  // a second notch comes too soon
      {-60, 500ms, 0},   {-60, 600ms, 1},                     // half a notch and the other half
      {-60, 1000ms, 0},  {60, 1100ms, 0},  {60, 1200ms, -1},  // what was begun the other way is forgotten
      {90, 2000ms, 0},   {90, 3001ms, 0},  {30, 3100ms, -1},  // and so it is after a second
      {360, 4000ms, -1},                                      // a fast turn is one step
  };
  for (const auto& turn : story) {
    EXPECT_EQ(wheel.turned(turn.eighths, turn.at), turn.step) << turn.at.count();
  }
}

}  // namespace
}  // namespace tallowin
