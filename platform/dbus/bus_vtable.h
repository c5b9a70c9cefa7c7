#pragma once

#include <list>
#include <string>
#include <systemd/sd-bus.h>
#include <vector>

#include "platform/desktop_service.h"

namespace tallowin {

/// An interface in the form that sd_bus_add_object_vtable(3) takes, and keeps a pointer to.
class BusVtable {
 public:
  /// `called` handles every method, `get` reads every property.
  BusVtable(const ServiceDescription::Interface& interface, sd_bus_message_handler_t called, sd_bus_property_get_t get);
  BusVtable(const BusVtable&) = delete;
  BusVtable& operator=(const BusVtable&) = delete;

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
