#pragma once

#include <chrono>
#include <cstdint>
#include <string>
#include <vector>

namespace tallowin {

/// What the Desktop Notifications Specification 1.2 lets a notification say, as far as it is used here.
struct DesktopNotification {
  enum class Urgency : std::uint8_t { low = 0, normal = 1, critical = 2 };

  std::uint32_t replaces = 0;  ///< the number of the notification whose place it takes, 0 for none
  std::string icon;
  std::string summary;  ///< plain text
  std::string body;     ///< markup where the service has the capability "body-markup", else plain text
  std::vector<std::string> buttons;
  bool stays = false;  ///< also when it has been clicked on; else it is not even kept in the service's list
  Urgency urgency = Urgency::normal;
  std::chrono::milliseconds expiry{0};  ///< zero for never
};

}  // namespace tallowin
