#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/settings_table.h"

namespace tallowin {

/// A Space as lists of Spaces show it.
struct SpaceRow {
  std::string id = {};
  std::string name = {};
  std::optional<std::int64_t> desktopNumber = {};  ///< counted from 1; full-screen Spaces have none
  std::string symbol = {};                         ///< name of a system symbol image
  std::optional<std::string> colorHex = {};        ///< as HUD::colorHex
  std::optional<std::string> group = {};
  bool isActive = false;   ///< the active Space of the menu-bar display
  bool isVisible = false;  ///< the active Space of any display
  bool operator==(const SpaceRow&) const = default;
};

/// The symbol of a Space that was given none: where there is room for one sign, the number says more.
inline constexpr std::string_view plainSymbol = "rectangle.on.rectangle";

/// The number for where there is little room: the desktop's number, or "–" for a full-screen Space.
[[nodiscard]] std::string numberOf(const SpaceRow& space);

/// What stands in the panel for the program: the active Space, or a mark for each Space.
struct StatusItem {
  /// One Space of a strip.
  struct Mark {
    std::string text;                     ///< its number; empty for a dot
    std::optional<std::string> colorHex;  ///< as HUD::colorHex
    bool isActive = false;
    bool operator==(const Mark&) const = default;
  };

  std::string text = {};    ///< beside the picture, where a panel shows texts; may be empty
  std::string symbol = {};  ///< in the picture; empty: `number` is
  std::string number = {};
  std::optional<std::string> colorHex = {};  ///< of the picture, as HUD::colorHex
  std::vector<Mark> marks = {};              ///< instead of the picture; empty unless every Space is shown
  std::size_t more = 0;                      ///< so many further Spaces have no mark
  std::string toolTip = {};                  ///< "2  Mail"
  bool scrollSwitches = false;               ///< turning the wheel over it steps through the Spaces
  bool operator==(const StatusItem&) const = default;
};

/// How the status item is to look.
struct StatusItemStyle {
  MenuBarStyle style = MenuBarStyle::name;
  bool showsIcon = true;
  bool scrollSwitches = true;
};

/// The item for these Spaces. Without an active Space it says "Tallowin".
[[nodiscard]] StatusItem statusItem(const std::vector<SpaceRow>& spaces, const StatusItemStyle& style);

/// Turns of a wheel, in eighths of a degree, into steps from Space to Space: one for each 120 eighths, as a notch has,
/// and one in 150 ms at the most. What is left of a turn is forgotten after a second, or when the direction changes.
class WheelSteps {
 public:
  using Time = std::chrono::milliseconds;  ///< since whenever

  /// The step that a turn at this time completes: -1 up, 1 down, 0 none.
  [[nodiscard]] int turned(int eighths, Time now);

 private:
  int rest_ = 0;
  std::optional<Time> lastTurn_;
  std::optional<Time> lastStep_;
};

}  // namespace tallowin
