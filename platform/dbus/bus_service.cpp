#include "platform/dbus/bus_service.h"

#include <algorithm>
#include <cstring>
#include <utility>

namespace tallowin {

namespace {

constexpr auto busServiceCategory = "BusService";
constexpr std::chrono::seconds pauseAfterFailure{30};
constexpr std::size_t mostCalls = 1024;  ///< that wait for their answers

/// Of the reply to RequestName (D-Bus Specification): another one has the name, and this connection is next.
constexpr std::uint32_t inQueue = 2;

constexpr auto propertiesInterface = "org.freedesktop.DBus.Properties";

/// Whether somebody wants to know properties.
bool isReading(sd_bus_message* message) {
  return sd_bus_message_is_method_call(message, propertiesInterface, "Get") > 0 ||
         sd_bus_message_is_method_call(message, propertiesInterface, "GetAll") > 0;
}

int appendResults(sd_bus_message* message, const std::vector<ServiceDescription::Argument>& results,
                  const PropertyList& values) {
  int status = 0;
  for (std::size_t index = 0; index < results.size() && status >= 0; ++index) {
    status = appendValue(message, results[index].type, results.size() == 1 ? values : values[index]);
  }
  return status;
}

/// The member of this name, which is there: the bus has found it by the same description.
template <typename Member>
const Member& find(const std::vector<Member>& members, std::string_view name) {
  return *std::ranges::find(members, name, &Member::name);
}

}  // namespace

BusService::BusService(BusLink& link, MainQueue& queue, const Clock& clock, Log& log)
    : link_(link),
      queue_(queue),
      clock_(clock),
      log_(log),
      openedListener_(link.onOpened([this] { opened(); })),
      lostListener_(link.onLost([this] { lost(); })) {}

Subscription BusService::offer(ServiceDescription description, Handlers handlers) {
  const auto offered = std::make_shared<Offered>(std::move(description), std::move(handlers), std::list<BusVtable>());
  for (const auto& interface : offered->description.interfaces) {
    offered->interfaces.emplace_back(interface, called, get);
  }
  offered_ = offered;
  if (link_.bus() != nullptr) {
    opened();
  } else {
    connect();
  }
  return Subscription([this] { withdraw(); });
}

void BusService::tellChanged(const std::string& interface, const std::vector<std::string>& properties) {
  if (!offered_) {
    return;
  }
  if (slots_.empty()) {
    connect();
    return;  // whoever finds the object now reads what is true now
  }
  std::vector<std::string> names = properties;
  std::vector<char*> pointers;
  std::ranges::transform(names, std::back_inserter(pointers), [](std::string& name) { return name.data(); });
  pointers.push_back(nullptr);
  auto* const bus = link_.bus();
  if (sd_bus_emit_properties_changed_strv(bus, offered_->description.path.c_str(), interface.c_str(), pointers.data()) <
      0) {
    link_.drop();
  } else {
    link_.serve();
  }
}

void BusService::connect() {
  if (retryAt_ && clock_.systemUptime() < *retryAt_) {
    return;
  }
  if (const auto opened = link_.open(); !opened) {
    retryAt_ = clock_.systemUptime() + pauseAfterFailure;
    sayOnce("other programs cannot call this one by D-Bus: " + opened.error());
  }
}

void BusService::opened() {
  if (!offered_ || link_.bus() == nullptr) {
    return;
  }
  if (const int status = addObject(link_.bus()); status < 0) {
    slots_.clear();
    sayOnce(std::string("other programs cannot call this one by D-Bus: ") + std::strerror(-status));
  } else {
    link_.serve();
  }
}

int BusService::addObject(sd_bus* bus) {
  const auto& path = offered_->description.path;
  sd_bus_slot* slot = nullptr;
  int status = sd_bus_add_filter(bus, &slot, filtered, this);
  slots_.emplace_back(std::exchange(slot, nullptr));
  for (const auto& interface : offered_->interfaces) {
    status = status < 0
                 ? status
                 : sd_bus_add_object_vtable(bus, &slot, path.c_str(), interface.interface(), interface.entries(), this);
    slots_.emplace_back(std::exchange(slot, nullptr));
  }
  if (status >= 0) {
    status = sd_bus_request_name_async(bus, &slot, offered_->description.name.c_str(), SD_BUS_NAME_QUEUE,
                                       BusService::named, this);
    slots_.emplace_back(slot);
  }
  return status;
}

void BusService::lost() {
  answering_.cancel();
  calls_.clear();
  if (!slots_.empty()) {
    slots_.clear();
    sayOnce("the bus has gone; other programs cannot call this one by D-Bus");
  }
}

void BusService::withdraw() {
  const bool isThere = !slots_.empty();
  answering_.cancel();
  calls_.clear();
  slots_.clear();
  if (isThere) {
    sd_bus_release_name_async(link_.bus(), nullptr, offered_->description.name.c_str(), nullptr, nullptr);
    link_.serve();
  }
  offered_.reset();
}

/// It is answered soon.
void BusService::take(sd_bus_message* call) {
  calls_.emplace_back(sd_bus_message_ref(call));
  answering_ = queue_.after(Duration::zero(), [this] { answerNext(); });
}

void BusService::answerNext() {
  const auto offered = offered_;  // until the call has gone
  auto call = std::move(calls_.front());
  calls_.pop_front();
  if (!calls_.empty()) {
    answering_ = queue_.after(Duration::zero(), [this] { answerNext(); });
  }
  if (isReading(call.get())) {
    answerReading(offered, std::move(call));
  } else {
    answerCall(offered, std::move(call));
  }
}

void BusService::answerCall(const std::shared_ptr<const Offered>& offered, BusMessage call) {
  const std::string interfaceName = sd_bus_message_get_interface(call.get());
  const std::string methodName = sd_bus_message_get_member(call.get());
  const auto& method = find(find(offered->description.interfaces, interfaceName).methods, methodName);
  auto arguments = PropertyList::array();
  for (const auto& argument : method.in) {
    arguments.push_back(readArgument(call.get(), argument.type));
  }
  offered->handlers.call(
      interfaceName, methodName, arguments,
      lifetime_.bound([this, offered, &results = method.out,
                       call = std::shared_ptr<sd_bus_message>(std::move(call))](const Result& result) {
        if (result) {
          reply(call.get(), [&](sd_bus_message* message) { return appendResults(message, results, *result); });
        } else {
          refuse(call.get(), result.error());
        }
      }));
}

void BusService::answerReading(const std::shared_ptr<const Offered>& offered, BusMessage call) {
  offered->handlers.whenSettled(
      lifetime_.bound([this, offered, call = std::shared_ptr<sd_bus_message>(std::move(call))] {
        sd_bus_message_rewind(call.get(), 1);
        const auto interface = readArgument(call.get(), "s").get<std::string>();
        std::vector<NamedBusValue> values;
        for (const auto& [name, type] : find(offered->description.interfaces, interface).properties) {
          values.push_back({name, type, offered->handlers.property(interface, name)});
        }
        reply(call.get(), [&](sd_bus_message* message) {
          if (sd_bus_message_is_method_call(call.get(), propertiesInterface, "GetAll") > 0) {
            return appendNamed(message, values);
          }
          const auto& read = find(values, readArgument(call.get(), "s").get<std::string>());
          return appendVariant(message, read.type, read.value);
        });
      }));
}

bool BusService::canReply(sd_bus_message* call) const {
  const auto* const bus = link_.bus();
  return bus != nullptr && bus == sd_bus_message_get_bus(call) && sd_bus_message_get_expect_reply(call) > 0;
}

void BusService::reply(sd_bus_message* call, const Filling& fill) const {
  sd_bus_message* message = nullptr;
  if (canReply(call) && sd_bus_message_new_method_return(call, &message) >= 0 && fill(message) >= 0) {
    send(message);
  }
  sd_bus_message_unref(message);
}

void BusService::refuse(sd_bus_message* call, const ServiceError& error) const {
  sd_bus_message* message = nullptr;
  if (canReply(call) && sd_bus_message_new_method_errorf(call, &message, error.name.c_str(), "%s",
                                                         transmissible(error.message).c_str()) >= 0) {
    send(message);
  }
  sd_bus_message_unref(message);
}

void BusService::send(sd_bus_message* reply) const {
  sd_bus_send(nullptr, reply, nullptr);
  link_.serve();
}

void BusService::sayOnce(std::string_view what) {
  if (std::exchange(said_, what) != what) {
    log_.info(busServiceCategory, what);
  }
}

int BusService::called(sd_bus_message* call, void* self, sd_bus_error* error) {
  auto* const service = static_cast<BusService*>(self);
  if (service->calls_.size() >= mostCalls) {
    return sd_bus_error_set(error, SD_BUS_ERROR_LIMITS_EXCEEDED, "too many calls at once");
  }
  service->take(call);
  return 1;  // the reply follows
}

/// Takes readings of the program's properties. Whatever is wrong with them sd-bus finds out itself.
int BusService::filtered(sd_bus_message* message, void* self, sd_bus_error* error) {
  auto* const service = static_cast<BusService*>(self);
  if (!isReading(message) || service->offered_->description.path != sd_bus_message_get_path(message)) {
    return 0;
  }
  const auto interface = readArgument(message, "s");
  const auto property = readArgument(message, "s");
  const bool ours = interface.is_string() && service->has(interface.get<std::string>(), property);
  sd_bus_message_rewind(message, 1);
  return ours ? called(message, self, error) : 0;
}

/// Whether there is such a property; null stands for any.
bool BusService::has(const std::string& interface, const PropertyList& property) const {
  const auto& interfaces = offered_->description.interfaces;
  const auto found = std::ranges::find(interfaces, interface, &ServiceDescription::Interface::name);
  return found != interfaces.end() &&
         (property.is_null() ||
          std::ranges::any_of(found->properties, [&](const auto& each) { return property == each.name; }));
}

int BusService::named(sd_bus_message* reply, void* self, sd_bus_error* /*error*/) {
  auto* const service = static_cast<BusService*>(self);
  const auto& name = service->offered_->description.name;
  std::uint32_t outcome = 0;
  if (const auto* const error = sd_bus_message_get_error(reply)) {
    service->sayOnce("this program cannot have the D-Bus name " + name + ": " +
                     (error->message != nullptr ? error->message : error->name));
  } else if (sd_bus_message_read(reply, "u", &outcome) > 0 && outcome != inQueue) {
    service->said_.clear();  // what is said from now on is news again
  } else {
    service->sayOnce("another program has the D-Bus name " + name + "; this one takes it when it is free");
  }
  return 0;
}

int BusService::get(sd_bus* /*bus*/, const char* /*path*/, const char* interface, const char* property,
                    sd_bus_message* reply, void* self, sd_bus_error* /*error*/) {
  const auto& offered = *static_cast<BusService*>(self)->offered_;
  const auto& described = find(find(offered.description.interfaces, interface).properties, property);
  return appendValue(reply, described.type, offered.handlers.property(interface, property));
}

}  // namespace tallowin
