#pragma once

#include <list>
#include <string>
#include <string_view>
#include <systemd/sd-bus.h>
#include <vector>

#include "platform/pinned.h"
#include "platform/property_list.h"
#include "platform/ways_in.h"

namespace tallowin {

/// The text, with "?" for bytes above 127 where it is not UTF-8: the bus takes nothing else.
[[nodiscard]] std::string transmissible(std::string text);

/// The next argument of a message, of one of the types in platform/desktop_service.h.
[[nodiscard]] PropertyList readArgument(sd_bus_message* message, std::string_view type);

/// Appends a value as a result or property of this type. Negative, as of errno(3), when it has another one.
[[nodiscard]] int appendValue(sd_bus_message* message, std::string_view type, const PropertyList& value);

/// Appends a value of this type as a variant.
[[nodiscard]] int appendVariant(sd_bus_message* message, std::string_view type, const PropertyList& value);

/// Something with a name.
struct NamedBusValue {
  std::string name;
  std::string type;
  PropertyList value;
};

/// Appends them as "a{sv}".
[[nodiscard]] int appendNamed(sd_bus_message* message, const std::vector<NamedBusValue>& values);

/// An interface in the form that sd_bus_add_object_vtable(3) takes, and keeps a pointer to.
class BusVtable : Pinned {
 public:
  /// `called` handles every method, `get` reads every property.
  BusVtable(const ServiceDescription::Interface& interface, sd_bus_message_handler_t called, sd_bus_property_get_t get);

  [[nodiscard]] const char* interface() const { return interface_.name.c_str(); }
  [[nodiscard]] const sd_bus_vtable* entries() const { return entries_.data(); }

 private:
  /// A text that stays where it is.
  const char* kept(std::string text) { return texts_.emplace_back(std::move(text)).c_str(); }

  const ServiceDescription::Interface interface_;
  std::list<std::string> texts_;
  std::vector<sd_bus_vtable> entries_;
};

}  // namespace tallowin
