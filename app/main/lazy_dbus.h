#pragma once

#include <memory>

#include "platform/clock.h"
#include "platform/dbus/dbus_module.h"
#include "platform/descriptors.h"
#include "platform/log.h"
#include "platform/main_queue.h"

namespace tallowin {

/// The D-Bus module, loaded for good; null when it cannot be.
[[nodiscard]] const DBusModule* loadDBusModule();

/// The desktop bus of the D-Bus module, which is loaded when it is first wanted. That it cannot be loaded is said once
/// in the log. Main thread only.
class LazyDBus {
 public:
  LazyDBus(MainQueue& mainQueue, Descriptors& descriptors, const Clock& clock, Log& log)
      : mainQueue_(mainQueue), descriptors_(descriptors), clock_(clock), log_(log) {}

  /// Null without the module.
  [[nodiscard]] DesktopBus* bus();

 private:
  [[nodiscard]] std::unique_ptr<DesktopBus> load() const;

  MainQueue& mainQueue_;
  Descriptors& descriptors_;
  const Clock& clock_;
  Log& log_;
  bool tried_ = false;
  std::unique_ptr<DesktopBus> bus_;
};

}  // namespace tallowin
