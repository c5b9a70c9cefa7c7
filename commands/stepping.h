#pragma once

#include <cstdint>
#include <functional>
#include <optional>

#include "core/space.h"

namespace tallowin {

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
