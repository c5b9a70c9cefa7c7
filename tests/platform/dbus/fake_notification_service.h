#pragma once

#include <cstdint>
#include <string>
#include <systemd/sd-bus.h>
#include <vector>

#include "tests/platform/poll_loop.h"

namespace tallowin {

/// A notification service on the user's bus, served by the loop of the test.
class FakeNotificationService {
 public:
  explicit FakeNotificationService(PollLoop& loop) {
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

  /// What was asked for, in the form "replaced id, icon, summary, body, urgency, transient, expiry".
  std::vector<std::string> shown;
  bool answers = true;  ///< else calls wait for answerHeld()

  void answerHeld() {
    for (auto* call : std::exchange(held_, {})) {
      answer(call);
      sd_bus_message_unref(call);
    }
  }

 private:
  static int called(sd_bus_message* message, void* self, sd_bus_error* /*error*/) {
    if (sd_bus_message_is_method_call(message, "org.freedesktop.Notifications", "Notify") <= 0) {
      return 0;
    }
    static_cast<FakeNotificationService*>(self)->notify(message);
    return 1;
  }

  void notify(sd_bus_message* message) {
    const char* application = nullptr;
    const char* icon = nullptr;
    const char* summary = nullptr;
    const char* body = nullptr;
    std::uint32_t replaced = 0;
    sd_bus_message_read(message, "susss", &application, &replaced, &icon, &summary, &body);
    sd_bus_message_skip(message, "as");
    const auto hints = readHints(message);
    std::int32_t expiry = 0;
    sd_bus_message_read(message, "i", &expiry);
    shown.push_back(std::string(application) + " " + std::to_string(replaced) + " " + icon + " [" + summary + "] [" +
                    body + "]" + hints + " " + std::to_string(expiry));
    if (answers) {
      answer(message);
    } else {
      held_.push_back(sd_bus_message_ref(message));
    }
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

}  // namespace tallowin
