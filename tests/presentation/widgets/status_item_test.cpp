// The status item's pictures, and its menu, as a panel is told of it by D-Bus and as a window of its own.

#include <QAction>
#include <QApplication>
#include <QDBusConnection>
#include <QFileDialog>
#include <QLineEdit>
#include <QMenu>
#include <QPoint>
#include <QTest>
#include <gmock/gmock.h>

#include "base/words.h"
#include "presentation/link/messages.h"
#include "presentation/widgets/menu_layout.h"
#include "presentation/widgets/space_pictures.h"
#include "presentation/widgets/status_controls.h"
#include "presentation/widgets/status_notifier.h"

namespace tallowin {
namespace {

/// Answers with a menu, later, and keeps what else it was asked.
class MenuInstance : public Instance {
 public:
  void ask(const std::vector<std::string>& words, std::function<void(const InstanceAnswer&)> answered) override {
    asked.push_back(joined(words, " "));
    answers.push_back(std::move(answered));
  }
  void answer(const InstanceAnswer& answer) {
    for (const auto& each : std::exchange(answers, {})) {
      each(answer);
    }
  }

  std::vector<std::string> asked;
  std::vector<std::function<void(const InstanceAnswer&)>> answers;
};

Menu someMenu() {
  using Kind = MenuEntry::Kind;
  using Mark = MenuEntry::Mark;
  const MenuEntry day{.label = "Day", .request = {"profile", "use", "Day"}, .mark = Mark::radio, .isMarked = true};
  return {{.label = "1  R&D_x", .request = {"switch", "1"}, .mark = Mark::check, .colorHex = "#34C759"},
          {.kind = Kind::separator},
          {.kind = Kind::submenu, .label = "Profile", .entries = {day}},
          {.label = "Quit", .request = {"quit"}}};
}

MenuNode childOf(const MenuNode& node, int index) {
  return node.children.at(index).value<MenuNode>();
}

TEST(MenuLayout, TellsWhatAPanelAsksFor) {
  MenuLayout layout;
  EXPECT_TRUE(layout.take(someMenu()));
  const auto all = *layout.node(0, -1, {});
  ASSERT_EQ(all.children.size(), 4);
  const auto first = childOf(all, 0);
  EXPECT_EQ(first.properties["label"], "1  R&D__x");
  EXPECT_EQ(first.properties["toggle-type"], "checkmark");
  EXPECT_EQ(first.properties["toggle-state"], 0);
  EXPECT_TRUE(first.properties["icon-data"].toByteArray().startsWith("\x89PNG"));
  EXPECT_EQ(childOf(all, 1).properties, (QVariantMap{{"type", "separator"}}));
  EXPECT_EQ(childOf(all, 2).properties, (QVariantMap{{"label", "Profile"}, {"children-display", "submenu"}}));
  EXPECT_EQ(childOf(childOf(all, 2), 0).properties,
            (QVariantMap{{"label", "Day"}, {"toggle-type", "radio"}, {"toggle-state", 1}}));
  EXPECT_TRUE(childOf(*layout.node(0, 1, {}), 2).children.isEmpty());
  EXPECT_EQ(childOf(*layout.node(0, 1, {"label"}), 0).properties.size(), 1);
  EXPECT_FALSE(layout.node(99, -1, {}));
  EXPECT_EQ(layout.properties({first.id, 99}, {"label"}).size(), 1);
  EXPECT_EQ(layout.properties({}, {}).size(), 6);
}

TEST(MenuLayout, GivesAnEntryAnIDForAsLongAsItStays) {
  MenuLayout layout;
  auto menu = someMenu();
  const auto idOf = [&layout](int index) { return childOf(*layout.node(0, -1, {}), index).id; };
  layout.take(menu);
  const int first = idOf(0);
  const int last = idOf(3);
  EXPECT_FALSE(layout.take(menu));
  EXPECT_EQ(layout.revision(), 1U);
  menu[0].isMarked = true;
  menu.insert(menu.begin() + 1, {.label = "2  Mail", .request = {"switch", "2"}});
  EXPECT_TRUE(layout.take(menu));
  EXPECT_EQ(idOf(0), first);
  EXPECT_EQ(idOf(4), last);
  menu[0].label = "1  Code";
  layout.take(menu);
  EXPECT_EQ(layout.entry(first), nullptr);
  EXPECT_EQ(layout.entry(last)->request, std::vector<std::string>{"quit"});
  EXPECT_EQ(layout.revision(), 3U);
}

TEST(StatusMenu, OpensWithWhatIsTrueThenAndIsUsedByKeyboard) {
  MenuInstance instance;
  StatusControls controls(instance);
  controls.menu().openAt({10, 10});
  controls.menu().openAt({10, 10});
  EXPECT_THAT(instance.asked, testing::ElementsAre("menu --json"));
  instance.answer({0, ui::encodeMenu(someMenu()), ""});
  auto* const menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
  ASSERT_NE(menu, nullptr);
  EXPECT_EQ(menu->actions().at(0)->text(), "1  R&&D_x");
  EXPECT_FALSE(menu->accessibleName().isEmpty());
  for (const auto key : {Qt::Key_Down, Qt::Key_Down, Qt::Key_Right, Qt::Key_Return}) {
    QTest::keyClick(QApplication::activePopupWidget(), key);
  }
  EXPECT_EQ(instance.asked.back(), "ui do -- profile use Day");
  QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  EXPECT_EQ(QApplication::topLevelWidgets().size(), 0);
  controls.menu().openAt({10, 10});
  instance.answer({notReached, "", "gone"});
  EXPECT_EQ(QApplication::activePopupWidget(), nullptr);
}

TEST(StatusMenu, AsksForTheFileThatAnEntryTakes) {
  MenuInstance instance;
  StatusControls controls(instance);
  controls.menu().choose({.label = "Import…", .request = {"template", "import"}, .asksForFile = true});
  auto* const dialog = qobject_cast<QFileDialog*>(QApplication::topLevelWidgets().value(0));
  ASSERT_NE(dialog, nullptr);
  EXPECT_EQ(dialog->windowTitle(), "Import");
  EXPECT_TRUE(instance.asked.empty());
  auto* const field = dialog->findChild<QLineEdit*>();
  field->setText(QApplication::applicationFilePath());
  QTest::keyClick(field, Qt::Key_Return);
  EXPECT_EQ(instance.asked.back(), "ui do -- template import " + QApplication::applicationFilePath().toStdString());
}

TEST(StatusNotifier, SaysWithoutABusThatThereIsNoPanel) {
  MenuInstance instance;
  StatusControls controls(instance);
  std::optional<bool> taken;
  const StatusNotifier item(QDBusConnection("nowhere"), controls, [&taken](bool hasPanel) { taken = hasPanel; });
  EXPECT_EQ(taken, false);
}

TEST(StatusPicture, HasAMarkForEachSpaceOfWhichTheActiveOneIsFilled) {
  StatusItem item;
  item.number = "2";
  item.colorHex = "#34C759";
  EXPECT_EQ(statusPicture(item, 22).pixelColor(11, 2), QColor("#34C759"));
  item.marks = {{"", "#FF0000", true}, {"", "#FF0000", false}, {"", std::nullopt, false}};
  item.more = 3;
  const auto picture = statusPicture(item, 24);  // two rows of two
  EXPECT_EQ(picture.pixelColor(6, 6), QColor("#FF0000"));
  EXPECT_EQ(picture.pixelColor(18, 6).alpha(), 0);
  const auto reddest = [&picture](const QPoint& corner) {
    int red = 0;
    for (int i = 0; i < 12 * 12; ++i) {
      const auto color = picture.pixelColor(corner + QPoint(i % 12, i / 12));
      red = color.alpha() > 128 ? std::max(red, color.red()) : red;
    }
    return red;
  };
  EXPECT_EQ(reddest({12, 0}), 255);
  EXPECT_LT(reddest({0, 12}), 200);
  EXPECT_GT(reddest({12, 12}), 0);
  item.more = 0;
  EXPECT_EQ(statusPicture(item, 24).copy(12, 12, 12, 12).pixelColor(6, 6).alpha(), 0);
}

}  // namespace
}  // namespace tallowin
