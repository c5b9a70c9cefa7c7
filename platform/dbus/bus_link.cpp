#include "platform/dbus/bus_link.h"

namespace tallowin {

std::expected<void, std::string> BusLink::open() {
  if (bus_) {
    return {};
  }
  auto opened = UserBus::open(queue_, descriptors_, [this] { drop(); });
  if (!opened) {
    return std::unexpected(std::move(opened).error());
  }
  bus_ = *std::move(opened);
  opened_.tell();
  if (!bus_) {
    return std::unexpected("the connection does not work");
  }
  return {};
}

void BusLink::drop() {
  if (bus_) {
    bus_.reset();
    lost_.tell();
  }
}

}  // namespace tallowin
