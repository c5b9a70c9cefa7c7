#include "platform/dbus/notification_toasts.h"

#include <algorithm>
#include <cstring>
#include <string>
#include <utility>

#include "base/unicode.h"

namespace tallowin {

namespace {

constexpr auto category = "NotificationToasts";
constexpr std::chrono::seconds pauseAfterFailure{30};
/// A service may be started by the call. The reference implementation of D-Bus allows as much.
constexpr std::chrono::microseconds patience = std::chrono::seconds(25);

// The levels and the type of an expiry in milliseconds are those of the Desktop Notifications Specification 1.2.
constexpr int lowUrgency = 0;
constexpr int normalUrgency = 1;
constexpr std::int32_t expiry = 2500;

/// The bus takes nothing but UTF-8.
std::string transmissible(std::string text) {
  if (!isValidUTF8(text)) {
    std::ranges::replace_if(text, [](char byte) { return static_cast<unsigned char>(byte) >= 0x80; }, '?');
  }
  return text;
}

}  // namespace

void NotificationToasts::show(const Toast& toast) {
  logged_.show(toast);
  if (retryAt_ && services_.clock.systemUptime() < *retryAt_) {
    return;
  }
  waiting_ = toast;
  if (call_ == nullptr) {
    sendWaiting();
  }
}

void NotificationToasts::sendWaiting() {
  const auto toast = std::exchange(waiting_, std::nullopt);
  if (!toast || !connect()) {
    return;
  }
  int status = send(*toast);
  if (status < 0) {
    disconnect();  // a bus that is gone may be noticed only now, and another one be there already
    if (!connect()) {
      return;
    }
    status = send(*toast);
  }
  if (status < 0) {
    giveUp(std::strerror(-status));
    disconnect();
    return;
  }
  bus_->serve();
}

bool NotificationToasts::connect() {
  if (bus_) {
    return true;
  }
  auto opened = UserBus::open(services_.mainQueue, services_.descriptors, [this] { lost(); });
  if (!opened) {
    giveUp(opened.error());
    return false;
  }
  bus_ = *std::move(opened);
  return true;
}

int NotificationToasts::send(const Toast& toast) {
  sd_bus_message* message = nullptr;
  int status =
      sd_bus_message_new_method_call(bus_->raw(), &message, "org.freedesktop.Notifications",
                                     "/org/freedesktop/Notifications", "org.freedesktop.Notifications", "Notify");
  if (status >= 0) {
    // The summary is plain text; the body, which may be markup, stays empty.
    status =
        sd_bus_message_append(message, "susssasa{sv}i", "Tallowin", shown_, toast.isError ? "dialog-error" : "tallowin",
                              transmissible(toast.text).c_str(), "", 0, 2, "transient", "b", 1, "urgency", "y",
                              toast.isError ? normalUrgency : lowUrgency, expiry);
  }
  if (status >= 0) {
    status = sd_bus_call_async(bus_->raw(), &call_, message, answered, this, patience.count());
  }
  sd_bus_message_unref(message);
  return status;
}

int NotificationToasts::answered(sd_bus_message* reply, void* self, sd_bus_error* /*error*/) {
  static_cast<NotificationToasts*>(self)->take(reply);
  return 0;
}

void NotificationToasts::take(sd_bus_message* reply) {
  dropCall();
  if (const auto* error = sd_bus_message_get_error(reply)) {
    giveUp(error->message != nullptr ? error->message : error->name);
    return;
  }
  if (sd_bus_message_read(reply, "u", &shown_) < 0) {
    shown_ = 0;
  }
  if (waiting_) {
    // Sending may replace the connection, which must not happen while it is telling.
    next_ = services_.mainQueue.after(Duration::zero(), [this] {
      if (call_ == nullptr) {
        sendWaiting();
      }
    });
  }
}

void NotificationToasts::giveUp(std::string_view why) {
  services_.log.info(category, "the desktop shows no notifications: " + std::string(why));
  retryAt_ = services_.clock.systemUptime() + pauseAfterFailure;
  waiting_.reset();
}

void NotificationToasts::lost() {
  if (call_ != nullptr) {
    giveUp("the bus has gone");
  }
  disconnect();
}

void NotificationToasts::disconnect() {
  dropCall();
  bus_.reset();
  shown_ = 0;
}

void NotificationToasts::dropCall() {
  call_ = sd_bus_slot_unref(call_);
}

}  // namespace tallowin
