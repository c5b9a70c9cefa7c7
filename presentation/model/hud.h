#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>

#include "base/settings_table.h"
#include "platform/geometry.h"
#include "platform/messages.h"

namespace tallowin {

/// The pop-up that says where the user has got to.
struct HUD {
  std::string id = {};  ///< of the Space
  std::string name = {};
  std::string symbol = {};                         ///< name of a system symbol image
  std::optional<std::string> colorHex = {};        ///< "#RRGGBB"; absent or anything else for none
  std::optional<std::int64_t> desktopNumber = {};  ///< counted from 1; full-screen Spaces have none
  std::string line = {};                           ///< below the name; may be empty
  HUDSize size = HUDSize::regular;
  HUDPosition position = HUDPosition::top;
  double seconds = 0;  ///< for which it stays, before it fades
  bool operator==(const HUD&) const = default;
};

/// How large the pop-up is in points, for a font whose lines are so high. At 96 dots to the inch, where that is 16
/// points, a regular one is 360 by 96.
[[nodiscard]] CGSize hudExtent(HUDSize size, double lineHeight);

/// Where the pop-up stands in a work area: in the middle of it, or an eighth of its height from its top or its bottom;
/// never outside, and no larger than it.
[[nodiscard]] CGRect hudFrame(const CGRect& workArea, CGSize extent, HUDPosition position);

/// For how long a message stays, so that it can be read: 1.2 s, and 50 ms more for each character above 24, up to 5 s.
[[nodiscard]] std::chrono::milliseconds readingTime(const Toast& toast);

}  // namespace tallowin
