#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace tallowin {

/// How the resident program is started.
struct LaunchOptions {
  std::optional<std::string> settingsTab;  ///< one of SettingsWindow::tabs, which is opened then
  std::uint16_t port = 0;                  ///< where the HTTP interface is opened
};

}  // namespace tallowin
