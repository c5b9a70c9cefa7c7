#include "platform/simulated/simulated_desktop_service.h"

#include <algorithm>

namespace tallowin {

namespace {

using Interface = ServiceDescription::Interface;

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
  answer(member, arguments, [this, member](const Result& result) {
    if (result) {
      journal_.record("busReply", {{"member", member}, {"value", *result}});
    } else {
      journal_.record("busReply",
                      {{"member", member}, {"error", result.error().name}, {"message", result.error().message}});
    }
  });
}

void SimulatedDesktopService::answer(const std::string& member, const PropertyList& arguments,
                                     const Reply& reply) const {
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

}  // namespace tallowin
