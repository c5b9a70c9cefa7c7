#pragma once

#include "platform/shown.h"

namespace tallowin {

/// The panels in which the user searches. Main thread only.
class SearchPanels {
 public:
  virtual ~SearchPanels() = default;

  /// For windows, of the current Space or of all.
  virtual Shown showWindows(bool allSpaces) = 0;

  /// For applications to launch.
  virtual Shown showLauncher() = 0;
};

}  // namespace tallowin
