#pragma once

#include "platform/apple_script.h"
#include "platform/simulated/desktop_state.h"
#include "platform/simulated/journal.h"

namespace tallowin {

/// Scripts that are written down, and answer what the scenario says. Main thread only.
class SimulatedAppleScript : public AppleScript {
 public:
  SimulatedAppleScript(const DesktopState& state, Journal& journal) : state_(state), journal_(journal) {}

  std::optional<std::vector<std::string>> executeAndReturnError(std::string_view source) override {
    journal_.record("executeAndReturnError", {{"source", source}});
    const auto found = state_.appleScripts.find(source);
    return found == state_.appleScripts.end() ? std::nullopt : std::optional(found->second);
  }

 private:
  const DesktopState& state_;
  Journal& journal_;
};

}  // namespace tallowin
