#include "app/main/lazy_desktop_service.h"

#include <chrono>
#include <utility>

namespace tallowin {

namespace {

/// Loading takes a few milliseconds, which whoever waited for the start is not to wait for as well.
constexpr Duration untilLoaded = std::chrono::milliseconds(50);

}  // namespace

Subscription LazyDesktopService::offer(ServiceDescription description, Handlers handlers) {
  loading_ = mainQueue_.after(untilLoaded,
                              [this, described = std::move(description), handling = std::move(handlers)]() mutable {
                                if (auto* const bus = dbus_.bus()) {
                                  offered_ = bus->service().offer(std::move(described), std::move(handling));
                                }
                              });
  return Subscription([this] {
    loading_.cancel();
    offered_.cancel();
  });
}

void LazyDesktopService::tellChanged(const std::string& interface, const std::vector<std::string>& properties) {
  if (offered_) {
    dbus_.bus()->service().tellChanged(interface, properties);
  }
}

}  // namespace tallowin
