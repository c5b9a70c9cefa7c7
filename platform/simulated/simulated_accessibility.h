#pragma once

#include "platform/accessibility.h"
#include "platform/emulated/emulated_element.h"
#include "platform/emulated/mission_control.h"
#include "platform/simulated/desktop_state.h"
#include "platform/simulated/journal.h"

namespace tallowin {

/// The interfaces of the simulated applications: their windows on the active Spaces, and the Dock's Mission Control.
/// What is set or performed is a line of the journal. No virtual time passes while one waits for an application
/// that does not answer. Main thread only.
class SimulatedAccessibility : public Accessibility {
 public:
  SimulatedAccessibility(DesktopState& state, MissionControl& missionControl, Journal& journal)
      : state_(state), missionControl_(missionControl), journal_(journal) {}

  bool AXIsProcessTrusted() override { return state_.accessibilityAllowed; }
  bool AXIsProcessTrustedWithOptions(bool prompt) override;
  AXUIElement AXUIElementCreateApplication(ProcessID pid) override;
  void AXUIElementSetMessagingTimeout(const AXUIElement& element, Duration timeout) override;
  AXValue AXUIElementCopyAttributeValue(const AXUIElement& element, std::string_view attribute) override;
  bool AXUIElementSetAttributeValue(const AXUIElement& element, std::string_view attribute,
                                    const AXValue& value) override;
  bool AXUIElementPerformAction(const AXUIElement& element, std::string_view action) override;

 private:
  /// The element, if there is anybody to ask.
  [[nodiscard]] const EmulatedElement* asked(const AXUIElement& element) const;

  DesktopState& state_;
  MissionControl& missionControl_;
  Journal& journal_;
};

}  // namespace tallowin
