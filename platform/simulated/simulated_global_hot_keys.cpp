#include "platform/simulated/simulated_global_hot_keys.h"

#include <memory>
#include <utility>

#include "platform/events.h"

namespace tallowin {

std::optional<Subscription> SimulatedGlobalHotKeys::registerHotKey(VirtualKeyCode keyCode, std::uint64_t modifierFlags,
                                                                   std::function<void()> pressed) {
  const auto modifiers = modifierFlags & CGEventFlag::modifiers;
  const bool accepted = !state_.takenHotKeys.contains({keyCode, modifiers});
  journal_.record("registerHotKey", {{"keyCode", keyCode}, {"modifiers", modifiers}, {"accepted", accepted}});
  if (!accepted) {
    return {};
  }
  auto entry = presses_.subscribe([keyCode, modifiers, pressed = std::move(pressed)](Press& press) {
    if (press.keyCode == keyCode && press.modifierFlags == modifiers) {
      press.taken = true;
      pressed();
    }
  });
  // Shared only because the end of a subscription must be copyable.
  return Subscription([this, keyCode, modifiers, kept = std::make_shared<Subscription>(std::move(entry))] {
    journal_.record("unregisterHotKey", {{"keyCode", keyCode}, {"modifiers", modifiers}});
    kept->cancel();
  });
}

bool SimulatedGlobalHotKeys::press(VirtualKeyCode keyCode, std::uint64_t modifierFlags) {
  Press press{keyCode, modifierFlags & CGEventFlag::modifiers, false};
  if (state_.takenHotKeys.contains({press.keyCode, press.modifierFlags})) {
    return true;
  }
  presses_.tell(press);
  return press.taken;
}

}  // namespace tallowin
