#include "platform/dbus/notification_service.h"

#include <array>
#include <cstring>
#include <utility>

#include "platform/dbus/bus_values.h"

namespace tallowin {

namespace {

constexpr auto serviceName = "org.freedesktop.Notifications";
constexpr auto objectPath = "/org/freedesktop/Notifications";
/// A service may be started by the call. The reference implementation of D-Bus allows as much.
constexpr std::chrono::microseconds patience = std::chrono::seconds(25);

std::string sender(sd_bus_message* message) {
  const auto* const name = sd_bus_message_get_sender(message);
  return name != nullptr ? name : "";
}

int newCall(sd_bus* bus, sd_bus_message** message, const char* destination, const char* method) {
  return sd_bus_message_new_method_call(bus, message, destination, objectPath, serviceName, method);
}

int appendButtons(sd_bus_message* message, const std::vector<std::string>& buttons) {
  int status = sd_bus_message_open_container(message, 'a', "s");
  for (std::size_t index = 0; index < buttons.size() && status >= 0; ++index) {
    status = sd_bus_message_append(message, "ss", std::to_string(index).c_str(), transmissible(buttons[index]).c_str());
  }
  return status < 0 ? status : sd_bus_message_close_container(message);
}

int append(sd_bus_message* message, const DesktopNotification& notification) {
  const auto summary = transmissible(notification.summary);
  const auto body = transmissible(notification.body);
  int status = sd_bus_message_append(message, "susss", "Tallowin", notification.replaces, notification.icon.c_str(),
                                     summary.c_str(), body.c_str());
  if (status >= 0) {
    status = appendButtons(message, notification.buttons);
  }
  if (status >= 0) {
    status = sd_bus_message_append(message, "a{sv}i", 2, notification.stays ? "resident" : "transient", "b", 1,
                                   "urgency", "y", static_cast<int>(notification.urgency),
                                   static_cast<std::int32_t>(notification.expiry.count()));
  }
  return status;
}

/// What went wrong, or nothing for the reply to a call that went well.
std::optional<std::string> errorOf(sd_bus_message* reply) {
  const auto* const error = sd_bus_message_get_error(reply);
  if (error == nullptr) {
    return std::nullopt;
  }
  return error->message != nullptr ? error->message : error->name;
}

std::vector<std::string> readTexts(sd_bus_message* message) {
  std::vector<std::string> texts;
  const char* text = nullptr;
  if (sd_bus_message_enter_container(message, 'a', "s") > 0) {
    while (sd_bus_message_read(message, "s", &text) > 0) {
      texts.emplace_back(text);
    }
  }
  return texts;
}

}  // namespace

struct NotificationService::PendingCall : private Pinned {
  PendingCall(MainQueue& mainQueue, Reply whenReplied) : queue(mainQueue), reply(std::move(whenReplied)) {}
  ~PendingCall() { sd_bus_slot_unref(slot); }

  MainQueue& queue;
  Reply reply;
  sd_bus_slot* slot = nullptr;
  WorkItem telling;
};

NotificationService::Call NotificationService::capabilities(Done<std::vector<std::string>> done) {
  return call(
      "GetCapabilities", [](sd_bus_message*) { return 0; },
      [done = std::move(done)](sd_bus_message* reply) {
        if (auto error = errorOf(reply)) {
          done(std::unexpected(*std::move(error)));
        } else {
          done(readTexts(reply));
        }
      });
}

NotificationService::Call NotificationService::notify(const DesktopNotification& notification, Done<ID> done) {
  auto current = notification;
  const auto lost = onLost([&current] { current.replaces = 0; });  // the next bus has never shown it
  return call(
      "Notify", [&current](sd_bus_message* message) { return append(message, current); },
      [done = std::move(done)](sd_bus_message* reply) {
        if (auto error = errorOf(reply)) {
          done(std::unexpected(*std::move(error)));
          return;
        }
        ID id{sender(reply), 0};
        sd_bus_message_read(reply, "u", &id.number);
        done(std::move(id));
      });
}

void NotificationService::close(const ID& id) {
  auto* const bus = link_.bus();
  if (bus == nullptr) {
    return;
  }
  sd_bus_message* message = nullptr;
  // Straight to the service that has it: the one after it may use the number for another notification.
  int status = newCall(bus, &message, id.service.c_str(), "CloseNotification");
  if (status >= 0) {
    status = sd_bus_message_append(message, "u", id.number);
  }
  if (status >= 0) {
    status = sd_bus_send(bus, message, nullptr);
  }
  sd_bus_message_unref(message);
  if (status < 0) {
    link_.drop();
  } else {
    link_.serve();
  }
}

void NotificationService::listen(Listener listener) {
  listener_ = std::move(listener);
  opened();
}

NotificationService::Call NotificationService::call(const char* method, const Append& append, Reply reply) {
  const auto pending = std::make_shared<PendingCall>(queue_, std::move(reply));
  const bool mayBeGone = link_.bus() != nullptr;
  auto sent = send(method, append, *pending);
  if (!sent && mayBeGone) {
    sent = send(method, append, *pending);  // that it is gone shows only now, and another one may be there already
  }
  if (!sent) {
    return std::unexpected(std::move(sent).error());
  }
  link_.serve();
  return Subscription([pending] { pending->telling.cancel(); });
}

std::expected<void, std::string> NotificationService::send(const char* method, const Append& append,
                                                           PendingCall& call) {
  if (auto opened = link_.open(); !opened) {
    return opened;
  }
  auto* const bus = link_.bus();
  sd_bus_message* message = nullptr;
  int status = newCall(bus, &message, serviceName, method);
  if (status >= 0) {
    status = append(message);
  }
  if (status >= 0) {
    status = sd_bus_call_async(bus, &call.slot, message, replied, &call, patience.count());
  }
  sd_bus_message_unref(message);
  if (status < 0) {
    link_.drop();
    return std::unexpected(std::strerror(-status));
  }
  return {};
}

int NotificationService::addMatches() {
  static constexpr std::array rules = {
      "type='signal',sender='org.freedesktop.Notifications',path='/org/freedesktop/Notifications',"
      "interface='org.freedesktop.Notifications',member='ActionInvoked'",
      "type='signal',sender='org.freedesktop.Notifications',path='/org/freedesktop/Notifications',"
      "interface='org.freedesktop.Notifications',member='NotificationClosed'",
      "type='signal',sender='org.freedesktop.DBus',path='/org/freedesktop/DBus',"
      "interface='org.freedesktop.DBus',member='NameOwnerChanged',arg0='org.freedesktop.Notifications'"};
  int status = 0;
  for (const auto* const rule : rules) {
    sd_bus_slot* slot = nullptr;
    status = status < 0 ? status : sd_bus_add_match_async(link_.bus(), &slot, rule, heard, nullptr, this);
    matches_.emplace_back(slot);
  }
  return status;
}

void NotificationService::opened() {
  if (listener_.invoked && link_.bus() != nullptr && addMatches() < 0) {
    link_.drop();
  }
}

void NotificationService::lost() {
  matches_.clear();
  news_.clear();
  lost_.tell();
}

int NotificationService::replied(sd_bus_message* reply, void* call, sd_bus_error* /*error*/) {
  auto* const pending = static_cast<PendingCall*>(call);
  // Shared with nobody but the copies that std::function makes.
  const std::shared_ptr<sd_bus_message> kept(sd_bus_message_ref(reply), sd_bus_message_unref);
  pending->telling = pending->queue.after(Duration::zero(), [pending, kept] {
    const auto tell = std::move(pending->reply);
    tell(kept.get());
  });
  return 0;
}

int NotificationService::heard(sd_bus_message* signal, void* self, sd_bus_error* /*error*/) {
  auto* const service = static_cast<NotificationService*>(self);
  const std::string_view what = sd_bus_message_get_member(signal);
  std::uint32_t number = 0;
  std::uint32_t reason = 0;
  const char* action = nullptr;
  const char* name = nullptr;
  const char* before = nullptr;
  const char* now = nullptr;
  if (what == "ActionInvoked" && sd_bus_message_read(signal, "us", &number, &action) > 0) {
    service->tellLater([service, id = ID{sender(signal), number}, action = std::string(action)] {
      service->listener_.invoked(id, action);
    });
  } else if (what == "NotificationClosed" && sd_bus_message_read(signal, "uu", &number, &reason) > 0) {
    service->tellLater([service, id = ID{sender(signal), number}, reason] { service->listener_.closed(id, reason); });
  } else if (what == "NameOwnerChanged" && sd_bus_message_read(signal, "sss", &name, &before, &now) > 0) {
    service->tellLater([service, now = std::string(now)] { service->listener_.changed(now); });
  }
  return 0;
}

void NotificationService::tellLater(std::function<void()> news) {
  news_.push_back(std::move(news));
  telling_ = queue_.after(Duration::zero(), [this] { tellNext(); });
}

void NotificationService::tellNext() {
  if (news_.empty()) {
    return;
  }
  const auto news = std::move(news_.front());
  news_.pop_front();
  if (!news_.empty()) {
    telling_ = queue_.after(Duration::zero(), [this] { tellNext(); });
  }
  news();  // last, as it may be the end of this
}

}  // namespace tallowin
