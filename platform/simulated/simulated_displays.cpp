#include "platform/simulated/simulated_displays.h"

#include <algorithm>
#include <cctype>

namespace tallowin {

namespace {

bool isUUID(std::string_view text) {
  constexpr std::string_view pattern = "hhhhhhhh-hhhh-hhhh-hhhh-hhhhhhhhhhhh";
  return std::ranges::equal(
      text, pattern, [](unsigned char c, char expected) { return expected == '-' ? c == '-' : std::isxdigit(c) != 0; });
}

}  // namespace

const SimulatedDisplay* SimulatedDisplays::find(DisplayID display) const {
  const auto found = std::ranges::find(state_.displays, display, &SimulatedDisplay::id);
  return found == state_.displays.end() ? nullptr : &*found;
}

DisplayID SimulatedDisplays::CGMainDisplayID() {
  return state_.displays.empty() ? 0 : state_.displays.front().id;
}

CGRect SimulatedDisplays::CGDisplayBounds(DisplayID display) {
  const auto* const found = find(display);
  return found != nullptr ? found->bounds : CGRect{};
}

DisplayID SimulatedDisplays::CGDisplayGetDisplayIDFromUUID(std::string_view uuid) {
  const auto* const found = isUUID(uuid) ? state_.displayNamed(uuid) : nullptr;
  return found != nullptr ? found->id : 0;
}

bool SimulatedDisplays::CGDisplayIsBuiltin(DisplayID display) {
  const auto* const found = find(display);
  return found != nullptr && found->builtin;
}

std::vector<Screen> SimulatedDisplays::screens() {
  std::vector<Screen> screens;
  for (const auto& display : state_.displays) {
    screens.push_back({display.id, display.bounds, display.name});
  }
  return screens;
}

}  // namespace tallowin
