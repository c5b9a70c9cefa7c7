#pragma once

#include "app/main/lazy_dbus.h"
#include "platform/desktop_service.h"

namespace tallowin {

/// The object for other programs by the D-Bus module, which is loaded 50 ms after the object was offered, so that
/// start-up and the first callers do not wait for it. Main thread only.
class LazyDesktopService : public DesktopService {
 public:
  LazyDesktopService(LazyDBus& dbus, MainQueue& mainQueue) : dbus_(dbus), mainQueue_(mainQueue) {}

  Subscription offer(ServiceDescription description, Handlers handlers) override;
  void tellChanged(const std::string& interface, const std::vector<std::string>& properties) override;

 private:
  LazyDBus& dbus_;
  MainQueue& mainQueue_;
  WorkItem loading_;
  Subscription offered_;
};

}  // namespace tallowin
