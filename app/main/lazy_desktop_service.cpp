#include "app/main/lazy_desktop_service.h"

#include <utility>

namespace tallowin {

Subscription LazyDesktopService::offer(ServiceDescription description, Handlers handlers) {
  loading_ = mainQueue_.after(Duration::zero(),
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
