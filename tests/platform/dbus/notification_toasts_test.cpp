#include <gmock/gmock.h>
#include <sys/socket.h>
#include <sys/un.h>

#include "platform/dbus/notifications.h"
#include "tests/platform/dbus/notification_test.h"

namespace tallowin {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;

std::string information(int replaced, const std::string& text) {
  return "Tallowin " + std::to_string(replaced) + " tallowin [" + text + "] [] transient=b1 urgency=y0 2500";
}

class NotificationToastsTest : public NotificationTest {
 protected:
  void show(const std::string& text, bool isError = false) { toasts_->show({text, std::nullopt, isError}); }

  SetClock clock_;
  std::optional<NotificationToasts> toasts_{std::in_place, *client_, clock_, log_};
};

TEST_F(NotificationToastsTest, EachTakesThePlaceOfTheLast) {
  startBus();
  startService();
  EXPECT_EQ(loop_.watchCount(), 1U) << "no connection before the first message";
  show("<b>one</b> & more");
  ASSERT_TRUE(runUntilShown(1) && runUntilIdle());
  show("two", true);
  ASSERT_TRUE(runUntilShown(2) && runUntilIdle());
  show("M\xFF");
  ASSERT_TRUE(runUntilShown(3) && runUntilIdle());
  EXPECT_THAT(service_->shown,
              ElementsAre(information(0, "<b>one</b> & more"),
                          "Tallowin 41 dialog-error [two] [] transient=b1 urgency=y1 2500", information(42, "M?")));
  EXPECT_THAT(log_.toasts, ElementsAre("<b>one</b> & more", "error: two", "M\xFF"));
  EXPECT_THAT(log_.failures, IsEmpty());
}

TEST_F(NotificationToastsTest, TheNewestWaitsForTheAnswer) {
  startBus();
  startService();
  service_->answers = false;
  for (const auto* text : {"one", "two", "three"}) {
    show(text);
  }
  ASSERT_TRUE(runUntilShown(1));
  loop_.runReady();
  EXPECT_THAT(service_->shown, ElementsAre(information(0, "one")));
  service_->answerHeld();
  ASSERT_TRUE(runUntilShown(2));
  show("four");
  loop_.runReady();
  service_->answers = true;
  service_->answerHeld();
  ASSERT_TRUE(runUntilShown(3) && runUntilIdle());
  EXPECT_THAT(service_->shown, ElementsAre(information(0, "one"), information(41, "three"), information(42, "four")));
  EXPECT_THAT(log_.toasts, ElementsAre("one", "two", "three", "four"));
}

TEST_F(NotificationToastsTest, TriesAgainAfterAWhileWhereThereIsNoService) {
  startBus();
  show("one");
  show("two");
  ASSERT_TRUE(runUntilFailed(1));
  startService();
  clock_.uptime += 29999ms;
  show("three");
  loop_.runReady();
  EXPECT_FALSE(loop_.hasTimers()) << "nothing was asked";
  clock_.uptime += 1ms;
  show("four");
  ASSERT_TRUE(runUntilShown(1));
  EXPECT_THAT(service_->shown, ElementsAre(information(0, "four")));
  EXPECT_THAT(log_.toasts, ElementsAre("one", "two", "three", "four"));
}

TEST_F(NotificationToastsTest, ABusThatGoesAwayIsReplacedByTheNext) {
  startBus();
  startService();
  show("one");
  ASSERT_TRUE(runUntilShown(1) && runUntilIdle());
  service_.reset();
  bus_.stop();
  ASSERT_TRUE(loop_.runUntil([&] { return loop_.watchCount() == 0; })) << "a descriptor at its end is always readable";
  EXPECT_FALSE(loop_.hasTimers());
  startBus();
  startService();
  show("two");
  ASSERT_TRUE(runUntilShown(1) && runUntilIdle());
  EXPECT_THAT(service_->shown, ElementsAre(information(0, "two"))) << "the new service has never shown the first";

  // It goes while a message is on its way.
  service_->answers = false;
  show("four");
  show("five");
  ASSERT_TRUE(runUntilShown(2));
  bus_.stop();
  ASSERT_TRUE(runUntilFailed(1));
  ASSERT_TRUE(loop_.runUntil([&] { return loop_.watchCount() == 0; }));
  EXPECT_FALSE(loop_.hasTimers());
  EXPECT_THAT(log_.toasts, ElementsAre("one", "two", "four", "five"));
}

TEST_F(NotificationToastsTest, NeverWaitsForABusThatSaysNothing) {
  const int listener = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  const std::string path =
      std::string(std::getenv("DBUS_SESSION_BUS_ADDRESS")).substr(std::string("unix:path=").size());
  path.copy(address.sun_path, sizeof address.sun_path - 1);
  ASSERT_EQ(bind(listener, reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
  ASSERT_EQ(listen(listener, 5), 0);
  show("one");
  show("two");
  loop_.runReady();
  EXPECT_THAT(log_.failures, IsEmpty());
  const int peer = accept(listener, nullptr, nullptr);
  ASSERT_GE(peer, 0);
  ASSERT_EQ(write(peer, "nonsense\r\n", 10), 10);
  close(peer);
  ASSERT_TRUE(runUntilFailed(1));
  ASSERT_TRUE(loop_.runUntil([&] { return loop_.watchCount() == 0; }));
  EXPECT_FALSE(loop_.hasTimers());

  clock_.uptime += 30s;
  show("three");
  loop_.runReady();
  toasts_.reset();  // with the call outstanding
  client_.reset();
  link_.reset();
  EXPECT_EQ(loop_.watchCount(), 0U);
  close(listener);
}

}  // namespace
}  // namespace tallowin
