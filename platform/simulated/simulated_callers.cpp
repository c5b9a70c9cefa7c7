#include "platform/simulated/simulated_callers.h"

#include <algorithm>

namespace tallowin {

class SimulatedCommandChannel::JournalCaller : public Caller {
 public:
  JournalCaller(SimulatedCommandChannel& channel, int number) : channel_(channel), number_(number) {}

  bool out(std::string_view text) override { return record("out", text); }
  bool err(std::string_view text) override { return record("err", text); }
  void exit(int status) override {
    record("status", status);
    channel_.callers_.erase(number_);
  }
  void exitAtEnd(int status) override { exit(status); }

 private:
  bool record(const char* what, const nlohmann::ordered_json& value) {
    const bool lives = channel_.callers_.contains(number_);
    if (lives) {
      channel_.journal_.record("answer", {{"caller", number_}, {what, value}});
    }
    return lives;
  }

  SimulatedCommandChannel& channel_;
  const int number_;
};

void SimulatedCommandChannel::run(const std::vector<std::string>& arguments) {
  if (handler_) {
    callers_.insert(++lastCaller_);
    handler_({arguments, "/home/user"}, std::make_unique<JournalCaller>(*this, lastCaller_));
  }
}

namespace {

template <typename Member>
bool has(const std::vector<Member>& members, const std::string& name) {
  return std::ranges::find(members, name, &Member::name) != members.end();
}

}  // namespace

Subscription SimulatedDesktopService::offer(ServiceDescription description, Handlers handlers) {
  offered_ = {std::move(description), std::move(handlers)};
  return Subscription([this] { offered_.reset(); });
}

void SimulatedDesktopService::tellChanged(const std::string& interface, const std::vector<std::string>& properties) {
  if (!listens_ || !offered_) {
    return;
  }
  auto values = nlohmann::ordered_json::object();
  for (const auto& property : properties) {
    values[property] = offered_->handlers.property(interface, property);
  }
  journal_.record("PropertiesChanged", {{"interface", interface}, {"properties", values}});
}

void SimulatedDesktopService::call(const std::string& member, const PropertyList& arguments) {
  const Reply reply = [this, member](const Result& result) {
    nlohmann::ordered_json record = {{"member", member}};
    if (result) {
      record["value"] = *result;
    } else {
      record.update({{"error", result.error().name}, {"message", result.error().message}});
    }
    journal_.record("busReply", record);
  };
  if (!offered_) {
    reply(std::unexpected(ServiceError{"org.freedesktop.DBus.Error.ServiceUnknown", "nobody has the name"}));
    return;
  }
  const auto& handlers = offered_->handlers;
  for (const auto& [interface, methods, properties] : offered_->description.interfaces) {
    if (has(methods, member)) {
      handlers.call(interface, member, arguments, reply);
      return;
    }
    if (has(properties, member)) {
      handlers.whenSettled([read = handlers.property, interface, member, reply] { reply(read(interface, member)); });
      return;
    }
  }
  reply(std::unexpected(ServiceError{"org.freedesktop.DBus.Error.UnknownMethod", "there is no member " + member}));
}

class SimulatedTCPListeners::Listener : public TCPListener {
 public:
  Listener(SimulatedTCPListeners& owner, std::uint16_t port) : owner_(owner), port_(port) {}
  Listener(const Listener&) = delete;
  Listener& operator=(const Listener&) = delete;
  ~Listener() override {
    owner_.journal_.record("cancel", {{"port", port_}});
    owner_.open_.erase(port_);
  }

 private:
  SimulatedTCPListeners& owner_;
  const std::uint16_t port_;
};

std::expected<std::unique_ptr<TCPListener>, std::string> SimulatedTCPListeners::listen(std::uint16_t port,
                                                                                       TCPResponder responder) {
  const auto* const error = "Address already in use";
  if (state_.takenPorts.contains(port) || open_.contains(port)) {
    journal_.record("listen", {{"port", port}, {"error", error}});
    return std::unexpected(std::string(error));
  }
  journal_.record("listen", {{"port", port}});
  open_[port] = std::move(responder);
  return std::make_unique<Listener>(*this, port);
}

void SimulatedTCPListeners::request(std::uint16_t port, const std::string& bytes) {
  const auto found = open_.find(port);
  if (found == open_.end()) {
    journal_.record("respond", {{"port", port}, {"error", "Connection refused"}});
  } else if (!bytes.empty()) {
    journal_.record("respond", {{"port", port}, {"answer", found->second(bytes.substr(0, largestTCPRequest))}});
  }
}

}  // namespace tallowin
