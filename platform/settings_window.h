#pragma once

#include <array>
#include <optional>
#include <string>
#include <string_view>

#include "platform/shown.h"

namespace tallowin {

/// The window in which the user changes settings. Main thread only.
class SettingsWindow {
 public:
  /// Its tabs, by the names that the command line knows.
  static constexpr auto tabs = std::to_array<std::string_view>(
      {"general", "spaces", "windows", "shortcuts", "appearance", "overview", "statistics"});

  virtual ~SettingsWindow() = default;

  /// Opens it, or brings it to the front, on one of `tabs` (absent: the one used last); with `spaceID` the tab "spaces"
  /// shows the page of that Space.
  virtual Shown show(const std::optional<std::string>& tab, const std::optional<std::string>& spaceID) = 0;
};

}  // namespace tallowin
