#include "presentation/widgets/dialogs.h"

#include <QAccessible>
#include <QApplication>
#include <QColorDialog>
#include <QPushButton>
#include <QTest>
#include <QTimer>
#include <QToolButton>
#include <QWindow>
#include <gmock/gmock.h>
#include <set>

namespace tallowin {
namespace {

using ::testing::ElementsAre;
using Words = std::vector<std::string>;

/// Keeps what it is asked for.
class RecordingInstance : public Instance {
 public:
  void ask(const Words& words, std::function<void(const InstanceAnswer&)> /*answered*/) override {
    asked.push_back(joined(words));
  }

  std::vector<std::string> asked;

 private:
  static std::string joined(const Words& words) {
    std::string text;
    for (const auto& word : words) {
      text += (text.empty() ? "" : " ") + word;
    }
    return text;
  }
};

const Alert removal = {"Remove “R&D”?", "Its windows go to the desktop beside it.", {"Remove", "R&D", "Cancel"}};
const SpaceRow space = {"managed-2", "Mail", 2, "envelope", "#34C759", {}, true, true};
const ui::AskName rename = {7, {space, false, "Mail", {"Post", "Posters"}}};
const ui::AskName naming = {7, {space, true, "", {}}};

class DialogsTest : public ::testing::Test {
 protected:
  RecordingInstance instance;
  Dialogs dialogs{instance, [](const QSize& extent) { return QRect({100, 80}, extent); }};

  /// The dialogs that are open.
  static QList<QuestionDialog*> shown() {
    QList<QuestionDialog*> list;
    for (auto* const widget : QApplication::topLevelWidgets()) {
      if (auto* const dialog = dynamic_cast<QuestionDialog*>(widget); dialog != nullptr && dialog->isVisible()) {
        list.append(dialog);
      }
    }
    return list;
  }

  /// Until it is clicked.
  static bool takesNoFocus(const QWidget* dialog) {
    return dialog->windowHandle()->flags().testFlag(Qt::WindowDoesNotAcceptFocus);
  }

  static QWidget* focused() {
    auto* const dialog = shown().front();
    if (takesNoFocus(dialog)) {
      QTest::mouseClick(dialog->windowHandle(), Qt::LeftButton, {}, QPoint(2, 2));
    }
    dialog->activateWindow();
    EXPECT_TRUE(QTest::qWaitForWindowActive(dialog));
    return dialog->focusWidget();
  }

  static void press(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
    QTest::keyClick(focused(), key, modifiers);
  }
};

TEST_F(DialogsTest, EveryControlHasANameAndARoleAndIsReachedByTab) {
  const std::vector<ui::Message> questions = {ui::AskAlert{7, removal}, rename, naming,
                                              ui::AskNote{7, {space, "buy bread"}}};
  for (const auto& question : questions) {
    std::visit(
        [this](const auto& ask) {
          if constexpr (requires { dialogs.show(ask); }) {
            dialogs.show(ask);
          }
        },
        question);
    EXPECT_EQ(takesNoFocus(shown().front()), &question == &questions[2]);
    std::set<QWidget*> reached;
    for (auto* widget = focused(); reached.insert(widget).second; widget = focused()) {
      press(Qt::Key_Tab);
    }
    auto* const dialog = shown().front();
    EXPECT_FALSE(QAccessible::queryAccessibleInterface(dialog)->text(QAccessible::Name).isEmpty());
    for (auto* const widget : dialog->findChildren<QWidget*>()) {
      const auto name = widget->metaObject()->className() + (" " + widget->accessibleName().toStdString());
      if (widget->isVisible() && (widget->focusPolicy() & Qt::TabFocus) != 0) {
        auto* const seen = QAccessible::queryAccessibleInterface(widget);
        EXPECT_FALSE(seen->text(QAccessible::Name).isEmpty()) << name;
        EXPECT_THAT((std::array{QAccessible::PushButton, QAccessible::RadioButton, QAccessible::EditableText,
                                QAccessible::ButtonMenu, QAccessible::Button}),
                    ::testing::Contains(seen->role()))
            << name;
        EXPECT_TRUE(reached.contains(widget)) << name;
        EXPECT_GE(widget->height(), 32) << name;
      }
    }
    dialogs.show(ui::Withdraw{7});
  }
  EXPECT_THAT(instance.asked, ElementsAre());
}

TEST_F(DialogsTest, AnAlertIsAnsweredByKeysOneAfterAnother) {
  for (const std::uint64_t number : {1U, 2U, 3U, 4U}) {
    dialogs.show(ui::AskAlert{number, removal});
  }
  EXPECT_EQ(shown().size(), 1);
  EXPECT_EQ(shown().front()->findChildren<QPushButton*>()[1]->text(), "R&&D");
  press(Qt::Key_Return);
  dialogs.show(ui::Withdraw{3});
  EXPECT_EQ(shown().size(), 1);
  press(Qt::Key_Tab);
  press(Qt::Key_Return);
  press(Qt::Key_Escape);
  EXPECT_EQ(shown().size(), 0);
  EXPECT_THAT(instance.asked, ElementsAre("ui answer 1 -- 0", "ui answer 2 -- 1", "ui answer 4 --"));
}

TEST_F(DialogsTest, RenamingSaysOnlyWhatWasChanged) {
  dialogs.show(rename);
  press(Qt::Key_Escape);
  dialogs.show(rename);
  QTest::keyClicks(focused(), " --po ");
  press(Qt::Key_Return);
  dialogs.show(rename);
  press(Qt::Key_Delete);
  press(Qt::Key_Return);
  dialogs.show(rename);
  press(Qt::Key_C, Qt::AltModifier);
  press(Qt::Key_Right);  // from green to mint
  press(Qt::Key_S, Qt::AltModifier);
  press(Qt::Key_Left);  // from the envelope to what a Space shows that has none
  press(Qt::Key_Return);
  dialogs.show(rename);
  shown().front()->findChild<QToolButton*>()->click();
  auto* const other = shown().front()->findChild<QColorDialog*>();
  other->setCurrentColor(QColor(18, 52, 86));
  other->accept();
  press(Qt::Key_Return);
  dialogs.show(ui::AskName{7, {{"managed-3", "R&D", 3, "my.own", "#123456", {}, false, false}, false, "", {}}});
  press(Qt::Key_Return);
  EXPECT_THAT(instance.asked, ElementsAre("ui answer 7 --", "ui answer 7 -- name=--po",
                                          "ui answer 7 -- name=", "ui answer 7 -- name=Mail symbol= color=#00C7BE",
                                          "ui answer 7 -- name=Mail color=#123456", "ui answer 7 -- name="));
}

TEST_F(DialogsTest, AChangedNoteIsNotLostByOneEscape) {
  const ui::AskNote ask = {7, {space, "one"}};
  dialogs.show(ask);
  press(Qt::Key_Escape);
  for (const bool keeps : {false, true}) {
    dialogs.show(ask);
    QTest::keyClicks(focused(), " two");
    press(Qt::Key_Escape);
    press(keeps ? Qt::Key_Tab : Qt::Key_Escape);
    if (keeps) {
      press(Qt::Key_Space);
      press(Qt::Key_Return);
      press(Qt::Key_Return, Qt::ControlModifier);
    }
  }
  dialogs.show(ask);
  QTest::keyClicks(focused(), " two");
  shown().front()->close();
  EXPECT_THAT(instance.asked,
              ElementsAre("ui answer 7 --", "ui answer 7 --", "ui answer 7 -- one two\n", "ui answer 7 --"));
}

TEST_F(DialogsTest, ANewSpaceIsAskedAboutForAWhile) {
  dialogs.show(naming);
  auto* const dialog = shown().front();
  EXPECT_EQ(dialog->pos(), QPoint(100, 80));
  auto* const end = dialog->findChild<QTimer*>(QString(), Qt::FindDirectChildrenOnly);
  EXPECT_GT(end->remainingTime(), 7000);
  QEvent enter(QEvent::Enter);
  QEvent leave(QEvent::Leave);
  QApplication::sendEvent(dialog, &enter);
  EXPECT_FALSE(end->isActive());
  QApplication::sendEvent(dialog, &leave);
  end->start(0);
  EXPECT_TRUE(QTest::qWaitFor([] { return shown().empty(); }));
  EXPECT_THAT(instance.asked, ElementsAre("ui answer 7 --"));
}

}  // namespace
}  // namespace tallowin
