#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "base/log_toasts.h"
#include "base/pending_alerts.h"
#include "platform/clock.h"
#include "platform/dbus/dbus_module.h"
#include "platform/descriptors.h"
#include "platform/log.h"
#include "platform/main_queue.h"
#include "platform/messages.h"
#include "platform/ways_in.h"

namespace tallowin {

/// The D-Bus module, loaded for good; null when it cannot be.
[[nodiscard]] const DBusModule* loadDBusModule();

/// What the D-Bus module does for the program, loaded when it is first wanted. That it cannot be loaded is said once in
/// the log. Main thread only.
class LazyDBus : public Toasts, public AlertDisplay, public DesktopService {
 public:
  LazyDBus(MainQueue& mainQueue, Descriptors& descriptors, const Clock& clock, Log& log)
      : mainQueue_(mainQueue), descriptors_(descriptors), clock_(clock), log_(log), logged_(log) {}

  /// A notification of the desktop and a line of the log; the line alone without the module.
  void show(const Toast& toast) override;

  /// A notification; nothing is displayed without the module.
  Subscription show(const Alert& alert, const std::string& howToAnswer, Answered answered) override;

  /// The module is loaded 50 ms from now, so that start-up and the first callers do not wait for it.
  Subscription offer(ServiceDescription description, Handlers handlers) override;
  void tellChanged(const std::string& interface, const std::vector<std::string>& properties) override;

 private:
  [[nodiscard]] DesktopBus* bus();

  MainQueue& mainQueue_;
  Descriptors& descriptors_;
  const Clock& clock_;
  Log& log_;
  LogToasts logged_;
  bool tried_ = false;
  std::unique_ptr<DesktopBus> bus_;  ///< null without the module
  WorkItem loading_;
  Subscription offered_;
};

}  // namespace tallowin
