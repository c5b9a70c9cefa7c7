#pragma once

#include <memory>

#include "platform/clock.h"
#include "platform/descriptors.h"
#include "platform/log.h"
#include "platform/main_queue.h"
#include "platform/toasts.h"

namespace tallowin {

/// Messages as notifications of the desktop and in the log, by the D-Bus module, which is loaded for the first one.
/// Without it they go to the log alone, which is said once there. Main thread only.
class LazyNotifications : public Toasts {
 public:
  LazyNotifications(MainQueue& mainQueue, Descriptors& descriptors, const Clock& clock, Log& log)
      : mainQueue_(mainQueue), descriptors_(descriptors), clock_(clock), log_(log) {}

  void show(const Toast& toast) override;

 private:
  [[nodiscard]] std::unique_ptr<Toasts> load() const;

  MainQueue& mainQueue_;
  Descriptors& descriptors_;
  const Clock& clock_;
  Log& log_;
  std::unique_ptr<Toasts> toasts_;
};

}  // namespace tallowin
