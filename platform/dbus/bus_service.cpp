#include "platform/dbus/bus_service.h"

#include <algorithm>
#include <cstring>
#include <utility>

#include "platform/dbus/bus_values.h"

namespace tallowin {

namespace {

constexpr auto category = "BusService";
constexpr std::chrono::seconds pauseAfterFailure{30};
constexpr std::size_t mostCalls = 1024;  ///< that wait for their answers

/// Of the reply to RequestName (D-Bus Specification): another one has the name, and this connection is next.
constexpr std::uint32_t inQueue = 2;

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
  if (sd_bus_emit_properties_changed_strv(bus->raw(), offered_->description.path.c_str(), interface.c_str(),
                                          pointers.data()) < 0) {
    link_.drop();
  } else {
    bus->serve();
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
  if (const int status = addObject(link_.bus()->raw()); status < 0) {
    slots_.clear();
    sayOnce(std::string("other programs cannot call this one by D-Bus: ") + std::strerror(-status));
  } else {
    link_.bus()->serve();
  }
}

int BusService::addObject(sd_bus* bus) {
  const auto& path = offered_->description.path;
  int status = 0;
  sd_bus_slot* slot = nullptr;
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
    sd_bus_release_name_async(link_.bus()->raw(), nullptr, offered_->description.name.c_str(), nullptr, nullptr);
    link_.bus()->serve();
  }
  offered_.reset();
}

void BusService::answerNext() {
  const auto offered = offered_;  // until the call has gone
  const auto call = std::move(calls_.front());
  calls_.pop_front();
  if (!calls_.empty()) {
    answering_ = queue_.after(Duration::zero(), [this] { answerNext(); });
  }
  answer(*offered, call.get());
}

void BusService::answer(const Offered& offered, sd_bus_message* call) const {
  std::string resultType;
  const auto result = handle(offered, call, resultType);
  const auto* const bus = link_.bus();
  if (bus == nullptr || bus->raw() != sd_bus_message_get_bus(call)) {
    return;  // lost meanwhile
  }
  sd_bus_message* reply = nullptr;
  int status = 0;
  if (result) {
    status = sd_bus_message_new_method_return(call, &reply);
    if (status >= 0 && !resultType.empty()) {
      status = appendValue(reply, resultType, *result);
    }
  } else {
    status = sd_bus_message_new_method_errorf(call, &reply, result.error().name.c_str(), "%s",
                                              transmissible(result.error().message).c_str());
  }
  if (status >= 0 && sd_bus_message_get_expect_reply(call) > 0) {
    sd_bus_send(nullptr, reply, nullptr);
  }
  sd_bus_message_unref(reply);
  link_.bus()->serve();
}

DesktopService::Result BusService::handle(const Offered& offered, sd_bus_message* call, std::string& resultType) {
  const std::string interfaceName = sd_bus_message_get_interface(call);
  const std::string methodName = sd_bus_message_get_member(call);
  const auto& method = find(find(offered.description.interfaces, interfaceName).methods, methodName);
  auto arguments = PropertyList::array();
  for (const auto& argument : method.in) {
    arguments.push_back(readArgument(call, argument.type));
  }
  resultType = method.out.empty() ? "" : method.out.front().type;
  return offered.handlers.call(interfaceName, methodName, arguments);
}

void BusService::sayOnce(std::string_view what) {
  if (std::exchange(said_, what) != what) {
    log_.info(category, what);
  }
}

int BusService::called(sd_bus_message* call, void* self, sd_bus_error* error) {
  auto* const service = static_cast<BusService*>(self);
  if (service->calls_.size() >= mostCalls) {
    return sd_bus_error_set(error, SD_BUS_ERROR_LIMITS_EXCEEDED, "too many calls at once");
  }
  service->calls_.emplace_back(sd_bus_message_ref(call));
  service->answering_ = service->queue_.after(Duration::zero(), [service] { service->answerNext(); });
  return 1;  // the reply follows
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
