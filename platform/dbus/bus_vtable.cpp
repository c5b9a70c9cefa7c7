#include "platform/dbus/bus_vtable.h"

#include <cstdint>

namespace tallowin {

namespace {

using Arguments = std::vector<ServiceDescription::Argument>;

std::string types(const Arguments& arguments) {
  std::string text;
  for (const auto& [type, name] : arguments) {
    text += type;
  }
  return text;
}

/// Each name with the zero byte behind it.
std::string names(const Arguments& arguments) {
  std::string text;
  for (const auto& [type, name] : arguments) {
    text += name + '\0';
  }
  return text;
}

/// All of it zero, also what only another member of its union uses.
sd_bus_vtable entry(std::uint8_t type, std::uint64_t flags) {
  sd_bus_vtable entry{};
  entry.type = type;
  entry.flags = flags & ((std::uint64_t{1} << 56) - 1);
  return entry;
}

}  // namespace

BusVtable::BusVtable(const ServiceDescription::Interface& interface, sd_bus_message_handler_t called,
                     sd_bus_property_get_t get)
    : interface_(interface) {
  auto& start = entries_.emplace_back(entry(_SD_BUS_VTABLE_START, 0)).x.start;
  start.element_size = sizeof(sd_bus_vtable);
  start.features = _SD_BUS_VTABLE_PARAM_NAMES;
  start.vtable_format_reference = &sd_bus_object_vtable_format;
  for (const auto& method : interface_.methods) {
    auto& added = entries_.emplace_back(entry(_SD_BUS_VTABLE_METHOD, SD_BUS_VTABLE_UNPRIVILEGED)).x.method;
    added.member = method.name.c_str();
    added.signature = kept(types(method.in));
    added.result = kept(types(method.out));
    added.names = kept(names(method.in) + names(method.out));
    added.handler = called;
  }
  for (const auto& property : interface_.properties) {
    auto& added = entries_.emplace_back(entry(_SD_BUS_VTABLE_PROPERTY, SD_BUS_VTABLE_PROPERTY_EMITS_CHANGE)).x.property;
    added.member = property.name.c_str();
    added.signature = property.type.c_str();
    added.get = get;
  }
  entries_.push_back(entry(_SD_BUS_VTABLE_END, 0));
}

}  // namespace tallowin
