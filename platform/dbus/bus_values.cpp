#include "platform/dbus/bus_values.h"

#include <algorithm>
#include <cerrno>
#include <cstdint>

#include "base/property_list_reading.h"
#include "base/unicode.h"

namespace tallowin {

namespace {

/// Appends what `fill` appends, inside a container.
template <typename Fill>
int appendInside(sd_bus_message* message, char container, const std::string& contents, const Fill& fill) {
  int status = sd_bus_message_open_container(message, container, contents.c_str());
  if (status >= 0) {
    status = fill();
  }
  return status < 0 ? status : sd_bus_message_close_container(message);
}

std::string_view typeOf(const PropertyList& value) {
  if (value.is_boolean()) {
    return "b";
  }
  if (value.is_number_integer()) {
    return "x";
  }
  return value.is_number() ? "d" : value.is_array() ? "as" : "s";
}

int appendList(sd_bus_message* message, std::string_view elementType, const PropertyList& list) {
  int status = 0;
  for (auto element = list.begin(); element != list.end() && status >= 0; ++element) {
    status = appendValue(message, elementType, *element);
  }
  return status;
}

int appendStructure(sd_bus_message* message, std::string_view memberTypes, const PropertyList& members) {
  int status = members.size() == memberTypes.size() ? 0 : -EINVAL;
  for (std::size_t index = 0; index < memberTypes.size() && status >= 0; ++index) {
    status = appendValue(message, memberTypes.substr(index, 1), members[index]);
  }
  return status;
}

int appendEntry(sd_bus_message* message, const std::string& name, std::string_view type, const PropertyList& value) {
  return appendInside(message, SD_BUS_TYPE_DICT_ENTRY, "sv", [&] {
    const int named = appendValue(message, "s", name);
    return named < 0 ? named : appendVariant(message, type, value);
  });
}

int appendEntries(sd_bus_message* message, const PropertyList& dictionary) {
  int status = 0;
  for (auto entry = dictionary.begin(); entry != dictionary.end() && status >= 0; ++entry) {
    status = appendEntry(message, entry.key(), typeOf(*entry), *entry);
  }
  return status;
}

int appendBasic(sd_bus_message* message, char type, const PropertyList& value) {
  if (type == SD_BUS_TYPE_STRING && value.is_string()) {
    return sd_bus_message_append_basic(message, type, transmissible(value.get<std::string>()).c_str());
  }
  if (type == SD_BUS_TYPE_BOOLEAN && value.is_boolean()) {
    const int flag = value.get<bool>() ? 1 : 0;
    return sd_bus_message_append_basic(message, type, &flag);
  }
  const auto integer = property_list::integer(value);
  if (type == SD_BUS_TYPE_INT64 && integer) {
    return sd_bus_message_append_basic(message, type, &*integer);
  }
  const auto real = property_list::real(value);
  return type == SD_BUS_TYPE_DOUBLE && real ? sd_bus_message_append_basic(message, type, &*real) : -EINVAL;
}

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

std::string transmissible(std::string text) {
  if (!isValidUTF8(text)) {
    std::ranges::replace_if(text, [](char byte) { return static_cast<unsigned char>(byte) >= 0x80; }, '?');
  }
  return text;
}

PropertyList readArgument(sd_bus_message* message, std::string_view type) {
  const char* text = nullptr;
  int flag = 0;
  if (type == "s") {
    return sd_bus_message_read_basic(message, SD_BUS_TYPE_STRING, static_cast<void*>(&text)) > 0 ? text
                                                                                                 : PropertyList();
  }
  if (type == "b") {
    return sd_bus_message_read_basic(message, SD_BUS_TYPE_BOOLEAN, &flag) > 0 ? PropertyList(flag != 0)
                                                                              : PropertyList();
  }
  if (type != "as") {
    sd_bus_message_skip(message, std::string(type).c_str());
    return type == "a{sv}" ? PropertyList::object() : PropertyList::array();
  }
  auto list = PropertyList::array();
  if (sd_bus_message_enter_container(message, SD_BUS_TYPE_ARRAY, "s") > 0) {
    while (sd_bus_message_read_basic(message, SD_BUS_TYPE_STRING, static_cast<void*>(&text)) > 0) {
      list.push_back(text);
    }
    sd_bus_message_exit_container(message);
  }
  return list;
}

int appendValue(sd_bus_message* message, std::string_view type, const PropertyList& value) {
  if (type == "a{sv}") {
    return value.is_object()
               ? appendInside(message, SD_BUS_TYPE_ARRAY, "{sv}", [&] { return appendEntries(message, value); })
               : -EINVAL;
  }
  if (type.starts_with('a') && value.is_array()) {
    const auto elementType = type.substr(1);
    return appendInside(message, SD_BUS_TYPE_ARRAY, std::string(elementType),
                        [&] { return appendList(message, elementType, value); });
  }
  if (type.starts_with('(') && value.is_array()) {
    const auto memberTypes = type.substr(1, type.size() - 2);
    return appendInside(message, SD_BUS_TYPE_STRUCT, std::string(memberTypes),
                        [&] { return appendStructure(message, memberTypes, value); });
  }
  return type.size() == 1 ? appendBasic(message, type.front(), value) : -EINVAL;
}

int appendVariant(sd_bus_message* message, std::string_view type, const PropertyList& value) {
  return appendInside(message, SD_BUS_TYPE_VARIANT, std::string(type),
                      [&] { return appendValue(message, type, value); });
}

int appendNamed(sd_bus_message* message, const std::vector<NamedBusValue>& values) {
  return appendInside(message, SD_BUS_TYPE_ARRAY, "{sv}", [&] {
    int status = 0;
    for (const auto& [name, type, value] : values) {
      status = status < 0 ? status : appendEntry(message, name, type, value);
    }
    return status;
  });
}

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
