#pragma once

#include <cstdint>
#include <functional>
#include <optional>

#include "commands/driven/space_driver.h"
#include "core/space.h"

namespace tallowin {

/// Makes the system show another Space: by asking the desktop for it, or by driving the Dock as a user would. Main
/// thread only.
class SpaceSwitcher {
 public:
  explicit SpaceSwitcher(const SwitchServices& services);
  SpaceSwitcher(const SpaceSwitcher&) = delete;
  SpaceSwitcher& operator=(const SpaceSwitcher&) = delete;

  /// Told just before a switch is asked for, while the Space that is left is still shown.
  std::function<void(const SpaceSnapshot& snapshot)> willSwitch;

  /// Switches the display that holds `target` to it. True when it is active already or the switch was asked for or
  /// posted, which does not mean that it was seen to happen; false when that was not possible.
  bool switchTo(const Space& target, const SpaceSnapshot& snapshot);

  /// To be called with every new snapshot, so that driven switches that bounce back are noticed.
  void observe(const SpaceSnapshot& snapshot);

  /// The display whose screen holds the pointer: the snapshot's only one, if it has no other; nothing when the pointer
  /// is on no screen or on one that the snapshot does not have.
  [[nodiscard]] std::optional<DisplaySpaces> displayUnderMouse(const SpaceSnapshot& snapshot) const;

 private:
  const SwitchServices services_;
  std::optional<SpaceDriver> driver_;  ///< nothing where the desktop is asked
};

/// What is said when there is no Space to step to.
inline constexpr auto noNeighbour = "There is no Space in that direction";

/// What the user wants of stepping through the Spaces of a display.
struct SteppingRules {
  bool wrapAround = true;
  bool passOverFullscreen = false;
  bool passOverEmpty = false;
};

/// The Space that one step from the display's active one leads to, in list order; nothing when there is no other.
[[nodiscard]] std::optional<Space> neighbour(const DisplaySpaces& display, bool right, const SteppingRules& rules,
                                             const std::function<bool(const Space&)>& isEmpty);

/// The same for one row up or down in a grid of the display's ordinary desktops, without wrapping. Nothing when
/// `columns` is not positive or the active Space is no ordinary desktop.
[[nodiscard]] std::optional<Space> gridNeighbour(const DisplaySpaces& display, bool up, std::int64_t columns);

}  // namespace tallowin
