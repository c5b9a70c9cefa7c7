#pragma once

#include <memory>
#include <systemd/sd-bus.h>

namespace tallowin {

/// Lets go of an object of sd-bus.
template <auto unref>
struct BusUnref {
  template <typename Object>
  void operator()(Object* object) const {
    unref(object);
  }
};

/// Something that the bus calls back for, until this is let go of.
using BusSlot = std::unique_ptr<sd_bus_slot, BusUnref<sd_bus_slot_unref>>;
using BusMessage = std::unique_ptr<sd_bus_message, BusUnref<sd_bus_message_unref>>;

}  // namespace tallowin
