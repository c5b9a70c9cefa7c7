#pragma once

#include "platform/shown.h"

namespace tallowin {

/// Shows the user what there is: once at the first run, and in the demonstration mode on request. Main thread only.
class GuidedTour {
 public:
  virtual ~GuidedTour() = default;

  /// The welcome of the first run. False when it cannot be shown, so that it is still owed.
  virtual bool welcome() = 0;

  virtual Shown runDemo() = 0;
};

}  // namespace tallowin
