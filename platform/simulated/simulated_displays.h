#pragma once

#include "platform/displays.h"
#include "platform/simulated/desktop_state.h"

namespace tallowin {

/// The simulated displays. Main thread only.
class SimulatedDisplays : public Displays {
 public:
  explicit SimulatedDisplays(const DesktopState& state) : state_(state) {}

  DisplayID CGMainDisplayID() override;
  CGRect CGDisplayBounds(DisplayID display) override;
  DisplayID CGDisplayGetDisplayIDFromUUID(std::string_view uuid) override;
  bool CGDisplayIsBuiltin(DisplayID display) override;
  std::vector<Screen> screens() override;
  std::vector<std::string> displaySetIdentifiers() override { return {}; }
  std::vector<Monitor> monitors() override { return {}; }

 private:
  [[nodiscard]] const SimulatedDisplay* find(DisplayID display) const;

  const DesktopState& state_;
};

}  // namespace tallowin
