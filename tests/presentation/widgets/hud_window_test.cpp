#include "presentation/widgets/hud_window.h"

#include <QAccessible>
#include <QApplication>
#include <QScreen>
#include <QTest>
#include <gtest/gtest.h>

namespace tallowin {
namespace {

TEST(HUDWindow, ShowsTheLastThingItWasToldAndGoes) {
  HUDWindow window;
  window.show(HUD{.name = "Mail", .desktopNumber = 2, .line = "call back", .size = HUDSize::large, .seconds = 60});
  const auto large = window.size();
  window.show(HUD{.name = "Chat & more", .desktopNumber = 3, .line = "Desktop 3 of 4", .seconds = 60});
  EXPECT_TRUE(window.isVisible());
  EXPECT_LT(window.width(), large.width());
  const auto area = window.screen()->availableGeometry();
  EXPECT_LE(std::abs(window.geometry().center().x() - area.center().x()), 1);
  EXPECT_EQ(window.y(), area.y() + area.height() / 8);
  const auto* const accessible = QAccessible::queryAccessibleInterface(&window);
  ASSERT_NE(accessible, nullptr);
  EXPECT_EQ(accessible->role(), QAccessible::Notification);
  EXPECT_EQ(accessible->text(QAccessible::Name), "Chat & more, Desktop 3 of 4");
  const auto space = window.grab().toImage();

  window.show(Toast{"There is no Desktop 9", std::nullopt, true});
  EXPECT_EQ(window.windowTitle(), "There is no Desktop 9");
  EXPECT_EQ(accessible->text(QAccessible::Name), "There is no Desktop 9");
  EXPECT_NE(window.grab().toImage(), space);
  EXPECT_FALSE(window.isActiveWindow());

  window.show(HUD{.name = "Mail", .seconds = 0});
  EXPECT_TRUE(QTest::qWaitFor([&window] { return !window.isVisible(); }));
}

TEST(HUDWindow, IsPaintedTheSameEveryTime) {
  HUDWindow window;
  const HUD hud{.name = "Mail", .colorHex = "#34C759", .desktopNumber = 2, .line = "call back", .seconds = 60};
  window.show(hud);
  const auto first = window.grab().toImage();
  window.show(Toast{"Between", std::nullopt, false});
  window.show(hud);
  EXPECT_EQ(window.grab().toImage(), first);
  EXPECT_EQ(first.pixelColor(first.height() / 4, first.height() / 4), QColor("#34C759")) << "in its Space's colour";
}

}  // namespace
}  // namespace tallowin
