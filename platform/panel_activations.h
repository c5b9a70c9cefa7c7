#pragma once

#include <functional>

#include "platform/subscription.h"

namespace tallowin {

/// What the user activates in panels, docks and task lists. Main thread only.
class PanelActivations {
 public:
  virtual ~PanelActivations() = default;

  /// Calls `observer` whenever a program such as a panel asks the desktop to activate a window, for as long as the
  /// subscription is kept. Who asks is not known: this program's own requests are told too.
  virtual Subscription observe(std::function<void()> observer) = 0;
};

}  // namespace tallowin
