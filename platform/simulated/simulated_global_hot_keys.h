#pragma once

#include <cstdint>
#include <functional>
#include <optional>

#include "base/broadcaster.h"
#include "platform/global_hot_keys.h"
#include "platform/simulated/desktop_state.h"
#include "platform/simulated/journal.h"

namespace tallowin {

/// Key combinations of the simulated keyboard that reach the program. Registering and giving up one is a line of the
/// journal. Main thread only.
class SimulatedGlobalHotKeys : public GlobalHotKeys {
 public:
  SimulatedGlobalHotKeys(const DesktopState& state, Journal& journal) : state_(state), journal_(journal) {}

  std::optional<Subscription> registerHotKey(VirtualKeyCode keyCode, std::uint64_t modifierFlags,
                                             std::function<void()> pressed) override;

  /// The user presses a key combination. True when somebody has it, so that nobody else sees the key.
  bool press(VirtualKeyCode keyCode, std::uint64_t modifierFlags);

 private:
  struct Press {
    VirtualKeyCode keyCode = 0;
    std::uint64_t modifierFlags = 0;
    bool taken = false;
  };

  const DesktopState& state_;
  Journal& journal_;
  Broadcaster<Press&> presses_;
};

}  // namespace tallowin
