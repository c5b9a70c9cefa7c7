#pragma once

#include <optional>
#include <string_view>

#include "platform/accessibility.h"
#include "platform/identifiers.h"
#include "platform/simulated/desktop_state.h"
#include "platform/simulated/journal.h"
#include "platform/simulated/mission_control.h"

namespace tallowin {

/// An accessibility element whose answers come from this process. Main thread only.
class SimulatedElement : public AXElementHandle {
 public:
  /// The empty alternative for an attribute that it does not have.
  [[nodiscard]] virtual AXValue attribute(std::string_view name) const = 0;

  /// True when the action was performed. By default it has no actions.
  virtual bool perform(std::string_view /*action*/) const { return false; }

  /// True when the attribute was set. By default none can be.
  virtual bool setAttribute(std::string_view /*name*/, const AXValue& /*value*/) const { return false; }

  /// The window of the window server that it stands for.
  [[nodiscard]] virtual std::optional<WindowNumber> window() const { return std::nullopt; }

  /// For calls on this element and those reached through it.
  virtual void setMessagingTimeout(Duration /*timeout*/) const {}

  /// Whether its application answers before the messaging timeout.
  [[nodiscard]] virtual bool answers() const { return true; }
};

/// The interfaces of the simulated applications: their windows on the active Spaces, and the Dock's Mission Control.
/// What is set or performed is a line of the journal. No virtual time passes while one waits for an application
/// that does not answer. Main thread only.
///
/// An application's element has "AXRole", "AXTitle", "AXHidden", "AXWindows" and "AXFocusedWindow", where, as on the
/// real system, windows on Spaces that are not active do not show. A window's element has "AXRole", "AXTitle",
/// "AXPosition", "AXSize", "AXMinimized", "AXMain" and "AXCloseButton" and the action "AXRaise"; its position and size,
/// "AXMinimized" and "AXMain" can be set.
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
  [[nodiscard]] const SimulatedElement* asked(const AXUIElement& element) const;

  DesktopState& state_;
  MissionControl& missionControl_;
  Journal& journal_;
};

}  // namespace tallowin
