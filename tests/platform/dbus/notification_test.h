#pragma once

#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <optional>
#include <string>
#include <systemd/sd-bus.h>
#include <vector>

#include "platform/dbus/notification_service.h"
#include "platform/log.h"
#include "tests/platform/child_process.h"
#include "tests/platform/test_loop.h"
#include "tests/set_clock.h"

namespace tallowin {

/// A message bus with nothing on it, at an address of its own, which is the user's bus while this exists.
class MessageBus {
 public:
  MessageBus() {
    char folder[] = "/tmp/tallowin-bus-XXXXXX";
    folder_ = mkdtemp(folder) != nullptr ? folder : "";
    std::ofstream(folder_ / "config") << "<busconfig><type>session</type><listen>" << address()
                                      << "</listen><policy context=\"default\"><allow send_destination=\"*\"/>"
                                         "<allow receive_sender=\"*\"/><allow own=\"*\"/></policy></busconfig>";
    setenv("DBUS_SESSION_BUS_ADDRESS", address().c_str(), 1);
  }

  ~MessageBus() {
    stop();
    unsetenv("DBUS_SESSION_BUS_ADDRESS");
    std::filesystem::remove_all(folder_);
  }
  MessageBus(const MessageBus&) = delete;
  MessageBus& operator=(const MessageBus&) = delete;

  /// False when there is no dbus-daemon.
  bool start() {
    daemon_.emplace(std::vector<std::string>{"dbus-daemon", "--nofork", "--nopidfile",
                                             "--config-file=" + (folder_ / "config").string(),
                                             "--print-address=" + std::to_string(ChildProcess::lineDescriptor)});
    return !daemon_->readLine().empty();
  }

  void stop() { daemon_.reset(); }

  [[nodiscard]] std::filesystem::path socket() const { return folder_ / "socket"; }

 private:
  [[nodiscard]] std::string address() const { return "unix:path=" + socket().string(); }

  std::filesystem::path folder_;
  std::optional<ChildProcess> daemon_;
};

/// A notification service on the user's bus, served by the loop of the test.
class FakeNotificationService {
 public:
  explicit FakeNotificationService(TestLoop& loop) {
    sd_bus_open_user(&bus_);
    sd_bus_add_object(bus_, nullptr, "/org/freedesktop/Notifications", called, this);
    owns_ = sd_bus_request_name(bus_, "org.freedesktop.Notifications", 0) >= 0;
    watch_ = loop.watchReadable(sd_bus_get_fd(bus_), [this] { serve(); });
  }

  ~FakeNotificationService() {
    for (auto* call : held_) {
      sd_bus_message_unref(call);
    }
    watch_.cancel();
    sd_bus_flush_close_unref(bus_);
  }
  FakeNotificationService(const FakeNotificationService&) = delete;
  FakeNotificationService& operator=(const FakeNotificationService&) = delete;

  [[nodiscard]] bool ownsName() const { return owns_; }

  /// What was asked for, in the form "replaced id, icon, summary, body, actions, hints, expiry".
  std::vector<std::string> shown;
  std::vector<std::uint32_t> taken;  ///< the ids that CloseNotification was called for
  std::vector<std::string> capabilities;
  bool answers = true;  ///< else calls wait for answerHeld()

  void answerHeld() {
    for (auto* call : std::exchange(held_, {})) {
      answer(call);
      sd_bus_message_unref(call);
    }
  }

  /// What the user does.
  void invoke(std::uint32_t id, const char* action) { emit("ActionInvoked", "us", id, action); }
  void close(std::uint32_t id, std::uint32_t reason) { emit("NotificationClosed", "uu", id, reason); }

 private:
  static constexpr auto interface = "org.freedesktop.Notifications";

  static int called(sd_bus_message* message, void* self, sd_bus_error* /*error*/) {
    return static_cast<FakeNotificationService*>(self)->dispatch(message);
  }

  int dispatch(sd_bus_message* message) {
    const auto asks = [message](const char* method) {
      return sd_bus_message_is_method_call(message, interface, method) > 0;
    };
    if (asks("Notify")) {
      notify(message);
    } else if (asks("GetCapabilities")) {
      tellCapabilities(message);
    } else if (asks("CloseNotification")) {
      sd_bus_message_read(message, "u", &taken.emplace_back());
    } else {
      return 0;
    }
    return 1;
  }

  void tellCapabilities(sd_bus_message* message) {
    std::vector<char*> texts;
    for (auto& capability : capabilities) {
      texts.push_back(capability.data());
    }
    texts.push_back(nullptr);
    sd_bus_message* reply = nullptr;
    sd_bus_message_new_method_return(message, &reply);
    sd_bus_message_append_strv(reply, texts.data());
    sd_bus_send(bus_, reply, nullptr);
    sd_bus_message_unref(reply);
  }

  template <typename... Values>
  void emit(const char* signal, const char* types, Values... values) {
    sd_bus_emit_signal(bus_, "/org/freedesktop/Notifications", interface, signal, types, values...);
  }

  void notify(sd_bus_message* message) {
    const char* application = nullptr;
    const char* icon = nullptr;
    const char* summary = nullptr;
    const char* body = nullptr;
    std::uint32_t replaced = 0;
    sd_bus_message_read(message, "susss", &application, &replaced, &icon, &summary, &body);
    const auto actions = readActions(message);
    const auto hints = readHints(message);
    std::int32_t expiry = 0;
    sd_bus_message_read(message, "i", &expiry);
    shown.push_back(std::string(application) + " " + std::to_string(replaced) + " " + icon + " [" + summary + "] [" +
                    body + "]" + actions + hints + " " + std::to_string(expiry));
    if (answers) {
      answer(message);
    } else {
      held_.push_back(sd_bus_message_ref(message));
    }
  }

  static std::string readActions(sd_bus_message* message) {
    std::string text;
    const char* key = nullptr;
    const char* label = nullptr;
    sd_bus_message_enter_container(message, 'a', "s");
    while (sd_bus_message_read(message, "ss", &key, &label) > 0) {
      text += std::string(" ") + key + "=(" + label + ")";
    }
    sd_bus_message_exit_container(message);
    return text;
  }

  static std::string readHints(sd_bus_message* message) {
    std::string text;
    sd_bus_message_enter_container(message, 'a', "{sv}");
    while (sd_bus_message_enter_container(message, 'e', "sv") > 0) {
      const char* name = nullptr;
      const char* type = nullptr;
      sd_bus_message_read(message, "s", &name);
      sd_bus_message_peek_type(message, nullptr, &type);
      std::uint8_t byte = 0;
      int boolean = 0;
      if (std::string_view(type) == "y") {
        sd_bus_message_read(message, "v", "y", &byte);
      } else {
        sd_bus_message_read(message, "v", "b", &boolean);
      }
      text += std::string(" ") + name + "=" + type + std::to_string(byte + boolean);
      sd_bus_message_exit_container(message);
    }
    sd_bus_message_exit_container(message);
    return text;
  }

  void answer(sd_bus_message* call) { sd_bus_reply_method_return(call, "u", ++lastId_); }

  void serve() {
    int status = 0;
    do {
      status = sd_bus_process(bus_, nullptr);
    } while (status > 0);
    if (status < 0) {
      watch_.cancel();
    }
  }

  sd_bus* bus_ = nullptr;
  bool owns_ = false;
  Subscription watch_;
  std::uint32_t lastId_ = 40;
  std::vector<sd_bus_message*> held_;
};

class KeptLog : public Log {
 public:
  void write(Level level, std::string_view category, std::string_view message) override {
    auto& list = category == "Toast" ? toasts : category == "PendingAlerts" ? questions : failures;
    list.push_back((level == Level::error ? "error: " : "") + std::string(message));
  }

  std::vector<std::string> toasts;
  std::vector<std::string> questions;
  std::vector<std::string> failures;
};

/// A user's bus, at first not there, and what speaks to the notification service on it.
class NotificationTest : public testing::Test {
 protected:
  void startBus() {
    if (!bus_.start()) {
      GTEST_SKIP() << "dbus-daemon could not be started";
    }
  }

  void startService() {
    service_.emplace(loop_);
    ASSERT_TRUE(service_->ownsName());
  }

  bool runUntilShown(std::size_t count) {
    return loop_.runUntil([&] { return service_->shown.size() >= count; });
  }
  bool runUntilFailed(std::size_t count) {
    return loop_.runUntil([&] { return log_.failures.size() >= count; });
  }
  /// The reply to what was shown has come: nothing else is waited for.
  bool runUntilIdle() {
    return loop_.runUntil([&] { return !loop_.hasTimers(); });
  }

  MessageBus bus_;
  TestLoop loop_;
  KeptLog log_;
  std::optional<FakeNotificationService> service_;
  std::optional<BusLink> link_{std::in_place, loop_, loop_};
  std::optional<NotificationService> client_{std::in_place, *link_, loop_};
};

}  // namespace tallowin
