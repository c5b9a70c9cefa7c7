#pragma once

namespace tallowin {

/// The panels in which the user searches. Main thread only.
class SearchPanels {
 public:
  virtual ~SearchPanels() = default;

  /// For windows, of the current Space or of all.
  virtual void showWindows(bool allSpaces) = 0;

  /// For applications to launch.
  virtual void showLauncher() = 0;
};

}  // namespace tallowin
