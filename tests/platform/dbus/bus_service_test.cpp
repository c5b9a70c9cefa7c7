// The program's object on a real bus, called by another connection.

#include "platform/dbus/bus_service.h"

#include <gmock/gmock.h>

#include "tests/platform/dbus/notification_test.h"

namespace tallowin {
namespace {

using testing::AnyOf;
using testing::Each;

/// Another program on the bus, served by the loop of the test.
class OtherProgram {
 public:
  explicit OtherProgram(TestLoop& loop) {
    sd_bus_open_user(&bus_);
    watch_ = loop.watchReadable(sd_bus_get_fd(bus_), [this] {
      while (sd_bus_process(bus_, nullptr) > 0) {
      }
    });
  }
  ~OtherProgram() {
    watch_.cancel();
    sd_bus_flush_close_unref(bus_);
  }
  OtherProgram(const OtherProgram&) = delete;
  OtherProgram& operator=(const OtherProgram&) = delete;

  void call(const char* text) {
    sd_bus_call_method_async(bus_, nullptr, "com.quorvex.Trial", "/trial", "com.quorvex.Trial", "Say", answered, this,
                             "s", text);
    sd_bus_flush(bus_);
  }

  std::vector<std::string> answers;  ///< results, and the names of errors

 private:
  static int answered(sd_bus_message* reply, void* self, sd_bus_error* /*error*/) {
    const auto* const error = sd_bus_message_get_error(reply);
    const char* text = nullptr;
    if (error == nullptr) {
      sd_bus_message_read(reply, "s", &text);
    }
    static_cast<OtherProgram*>(self)->answers.emplace_back(error != nullptr ? error->name : text);
    return 0;
  }

  sd_bus* bus_ = nullptr;
  Subscription watch_;
};

class BusServiceTest : public NotificationTest {
 protected:
  void offer() {
    offered_ = service_on_bus_.offer(
        {"com.quorvex.Trial", "/trial", {{"com.quorvex.Trial", {{"Say", {{"s", "text"}}, {{"s", "said"}}}}, {}}}},
        {[this](const auto&, const auto&, const PropertyList& arguments, const DesktopService::Reply& reply) {
           reply(say(arguments[0]));
         },
         [](const auto&, const auto&) { return ""; }, [](const auto& work) { work(); }});
  }

  DesktopService::Result say(const PropertyList& text) {
    if (text == "withdraw") {
      offered_.cancel();
    }
    return text;
  }

  SetClock clock_;
  BusService service_on_bus_{*link_, loop_, clock_, log_};
  Subscription offered_;
};

TEST_F(BusServiceTest, CanBeWithdrawnByACall) {
  startBus();
  OtherProgram other(loop_);
  offer();
  ASSERT_TRUE(runUntilIdle());
  other.call("withdraw");
  ASSERT_TRUE(loop_.runUntil([&] { return other.answers.size() == 1; }));
  other.call("hello");
  ASSERT_TRUE(loop_.runUntil([&] { return other.answers.size() == 2; }));
  EXPECT_EQ(other.answers.back(), "org.freedesktop.DBus.Error.ServiceUnknown");
}

TEST_F(BusServiceTest, LooksForABusAgainAfterHalfAMinute) {
  offer();
  EXPECT_EQ(log_.failures.size(), 1U);
  startBus();
  service_on_bus_.tellChanged("com.quorvex.Trial", {});
  EXPECT_EQ(loop_.watchCount(), 0U) << "too soon";
  clock_.uptime += std::chrono::seconds(30);
  service_on_bus_.tellChanged("com.quorvex.Trial", {});
  EXPECT_EQ(loop_.watchCount(), 1U);
}

TEST_F(BusServiceTest, AFloodIsAnsweredOrRefusedToTheLast) {
  startBus();
  offer();
  ASSERT_TRUE(runUntilIdle());
  OtherProgram other(loop_);
  constexpr std::size_t flood = 3000;
  for (std::size_t i = 0; i < flood; ++i) {
    other.call("hello");
  }
  ASSERT_TRUE(loop_.runUntil([&] { return other.answers.size() == flood; }));
  EXPECT_THAT(other.answers, Each(AnyOf("hello", "org.freedesktop.DBus.Error.LimitsExceeded")));
}

}  // namespace
}  // namespace tallowin
