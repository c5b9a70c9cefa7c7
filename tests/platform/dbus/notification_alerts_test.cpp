#include <gmock/gmock.h>

#include "base/pending_alerts.h"
#include "platform/dbus/notifications.h"
#include "tests/platform/dbus/notification_test.h"

namespace tallowin {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr std::uint32_t expired = 1;
constexpr std::uint32_t dismissed = 2;

const Alert restore{"Put them back?", "Saved \"A & <b>\".", {"Restore", "Not Now"}};
const std::string withButtons = R"(Tallowin 0 dialog-question [Put them back?] [Saved "A &amp; &lt;b&gt;".])"
                                " 0=(Restore) 1=(Not Now) resident=b1 urgency=y2 0";
const std::string withoutButtons =
    "Tallowin 0 dialog-question [Put them back?] [Saved \"A & <b>\".\n"
    "Answer with: tallowin answer Restore, or: tallowin answer \"Not Now\"]"
    " resident=b1 urgency=y2 0";

class NotificationAlertsTest : public NotificationTest {
 protected:
  void startServiceWithButtons() {
    startService();
    service_->capabilities = {"body", "actions", "body-markup"};
  }

  void ask(const Alert& alert = restore) {
    alerts_->show(alert, [this](std::optional<std::size_t> button) {
      answers_.push_back(button ? static_cast<int>(*button) : -1);
    });
  }

  bool runUntilAnswered() {
    return loop_.runUntil([&] { return !answers_.empty(); });
  }
  bool runUntilTaken() {
    return loop_.runUntil([&] { return !service_->taken.empty(); });
  }
  /// What the service has said so far has been heard: a later question has been there and back.
  bool runUntilHeard() {
    const auto shown = service_->shown.size() + 1;
    const auto taken = service_->taken.size() + 1;
    ask({"Heard?", "", {"OK"}});
    const bool came = runUntilShown(shown) && runUntilIdle() && alerts_->answer("OK").has_value();
    const bool went = came && loop_.runUntil([&] { return service_->taken.size() >= taken; });
    service_->taken.pop_back();
    answers_.pop_back();
    return went;
  }

  std::vector<int> answers_;  ///< -1 for none
  std::optional<NotificationAlerts> display_{std::in_place, *client_, log_};
  std::optional<PendingAlerts> alerts_{std::in_place, *display_, log_};
};

TEST_F(NotificationAlertsTest, OnlyItsOwnButtonsAnswerIt) {
  startBus();
  startServiceWithButtons();
  ask();
  ASSERT_TRUE(runUntilShown(1) && runUntilIdle());
  EXPECT_THAT(service_->shown, ElementsAre(withButtons));
  for (const auto* action : {"default", "", "-1", "2", "0x"}) {
    service_->invoke(41, action);
  }
  service_->invoke(40, "0");
  service_->invoke(0, "0");
  ASSERT_TRUE(runUntilHeard());
  EXPECT_THAT(answers_, IsEmpty());
  EXPECT_THAT(service_->taken, IsEmpty());
  service_->invoke(41, "1");
  service_->invoke(41, "0");
  ASSERT_TRUE(runUntilTaken());
  EXPECT_THAT(service_->taken, ElementsAre(41U));
  ASSERT_TRUE(runUntilHeard());
  EXPECT_THAT(answers_, ElementsAre(1));
  EXPECT_THAT(log_.failures, IsEmpty());
}

TEST_F(NotificationAlertsTest, ClosingOneWithButtonsIsNoAnswer) {
  startBus();
  startServiceWithButtons();
  ask();
  ask();
  ASSERT_TRUE(runUntilShown(2) && runUntilIdle());
  service_->close(41, expired);
  service_->close(42, dismissed);
  ASSERT_TRUE(runUntilAnswered());
  EXPECT_THAT(answers_, ElementsAre(-1));
  EXPECT_TRUE(alerts_->answer("restore")) << "nobody has seen the end of the first";
  EXPECT_FALSE(alerts_->answer("restore"));
  EXPECT_THAT(answers_, ElementsAre(-1, 0));
  EXPECT_THAT(service_->taken, IsEmpty()) << "both had gone";
}

TEST_F(NotificationAlertsTest, WithoutButtonsItSaysHowToAnswer) {
  startBus();
  startService();
  ask();
  ASSERT_TRUE(runUntilShown(1) && runUntilIdle());
  EXPECT_THAT(service_->shown, ElementsAre(withoutButtons));
  service_->close(41, dismissed);
  ASSERT_TRUE(runUntilHeard());
  EXPECT_THAT(answers_, IsEmpty());
  EXPECT_TRUE(alerts_->answer("not now"));
  EXPECT_THAT(answers_, ElementsAre(1));
}

TEST_F(NotificationAlertsTest, TheNotificationGoesWhenAnsweredElsewhere) {
  startBus();
  startServiceWithButtons();
  ask();
  ASSERT_TRUE(runUntilShown(1) && runUntilIdle());
  ASSERT_TRUE(alerts_->answer("Restore"));
  ASSERT_TRUE(runUntilTaken());
  EXPECT_THAT(service_->taken, ElementsAre(41U));

  // Before it is shown.
  ask();
  ASSERT_TRUE(alerts_->answer("Restore"));
  ASSERT_TRUE(runUntilIdle());
  EXPECT_EQ(service_->shown.size(), 1U);

  // Before it is known under which number.
  service_->taken.clear();
  service_->answers = false;
  ask();
  ASSERT_TRUE(runUntilShown(2));
  ASSERT_TRUE(alerts_->answer("Restore"));
  EXPECT_THAT(service_->taken, IsEmpty());
  service_->answerHeld();
  ASSERT_TRUE(runUntilTaken());
  EXPECT_THAT(service_->taken, ElementsAre(42U));
  EXPECT_THAT(answers_, ElementsAre(0, 0, 0));
}

TEST_F(NotificationAlertsTest, StaysOpenWithoutAServiceAndIsShownByTheNext) {
  startBus();
  ask();
  ASSERT_TRUE(runUntilFailed(1) && runUntilIdle());
  startServiceWithButtons();
  ASSERT_TRUE(runUntilShown(1) && runUntilIdle());
  EXPECT_THAT(service_->shown, ElementsAre(withButtons));

  service_.reset();
  ASSERT_TRUE(runUntilFailed(2));
  EXPECT_EQ(log_.failures[1], "the desktop does not show \"Put them back?\": the notification service has gone");
  startServiceWithButtons();
  ASSERT_TRUE(runUntilShown(1) && runUntilIdle());
  service_->invoke(41, "0");
  ASSERT_TRUE(runUntilAnswered());
  EXPECT_THAT(answers_, ElementsAre(0));
}

TEST_F(NotificationAlertsTest, StaysOpenWithoutABus) {
  ask();
  EXPECT_THAT(log_.failures, ElementsAre("the desktop does not show \"Put them back?\": No such file or directory"));
  EXPECT_TRUE(alerts_->answer("2"));

  startBus();
  startServiceWithButtons();
  ask();
  ask();
  ASSERT_TRUE(runUntilShown(2) && runUntilIdle());
  service_->answers = false;
  ask();
  ASSERT_TRUE(runUntilShown(3));
  ASSERT_TRUE(alerts_->answer("Restore"));
  service_.reset();
  bus_.stop();
  ASSERT_TRUE(loop_.runUntil([&] { return loop_.watchCount() == 0; }));
  EXPECT_FALSE(loop_.hasTimers());
  EXPECT_TRUE(alerts_->answer("Restore") && alerts_->answer("Not Now"));
  EXPECT_THAT(answers_, ElementsAre(1, 0, 0, 1));
}

TEST_F(NotificationAlertsTest, NobodyIsAnsweredByTheEnd) {
  startBus();
  startServiceWithButtons();
  ask();
  ASSERT_TRUE(runUntilShown(1) && runUntilIdle());
  service_->answers = false;
  ask();
  ASSERT_TRUE(runUntilShown(2));
  service_->invoke(41, "0");
  alerts_.reset();
  display_.reset();
  client_.reset();
  ASSERT_TRUE(runUntilTaken()) << "buttons that do nothing must not stay";
  EXPECT_THAT(service_->taken, ElementsAre(41U));
  EXPECT_THAT(answers_, IsEmpty());
}

}  // namespace
}  // namespace tallowin
