#pragma once

#include <chrono>
#include <memory>

#include "platform/accessibility.h"
#include "platform/identifiers.h"
#include "platform/simulated/desktop_state.h"
#include "platform/simulated/journal.h"
#include "platform/simulated/mission_control.h"
#include "platform/simulated/simulated_element.h"

namespace tallowin {

/// An accessibility element that a simulated application answers for, if it answers at all. The state must outlive it.
/// Main thread only.
class ApplicationPart : public SimulatedElement {
 public:
  /// What the system waits for an answer if nobody has said anything else.
  static constexpr Duration defaultTimeout = std::chrono::seconds{6};

  [[nodiscard]] ProcessID pid() const { return pid_; }

  /// For calls on this element and those reached through it.
  void setMessagingTimeout(Duration timeout) const { *timeout_ = timeout; }

  /// Whether the application answers before the messaging timeout.
  [[nodiscard]] bool answers() const {
    const auto* const application = state_.application(pid_);
    return application != nullptr && application->responseTime && *application->responseTime <= *timeout_;
  }

 protected:
  ApplicationPart(DesktopState& state, ProcessID pid)
      : state_(state), pid_(pid), timeout_(std::make_shared<Duration>(defaultTimeout)) {}
  /// An element reached through another one.
  explicit ApplicationPart(const ApplicationPart& parent)
      : SimulatedElement(parent), state_(parent.state_), pid_(parent.pid_), timeout_(parent.timeout_) {}

  [[nodiscard]] DesktopState& state() const { return state_; }

 private:
  DesktopState& state_;
  const ProcessID pid_;
  // Shared by an application's element and all those reached through it.
  const std::shared_ptr<Duration> timeout_;
};

/// An accessibility element that stands for a window of the window server.
class WindowElement : public ApplicationPart {
 public:
  WindowElement(const ApplicationPart& application, WindowNumber number)
      : ApplicationPart(application), number_(number) {}
  [[nodiscard]] WindowNumber number() const { return number_; }

 private:
  const WindowNumber number_;
};

/// The application element of a process, an ApplicationPart: "AXRole", "AXTitle", "AXHidden", "AXWindows" and
/// "AXFocusedWindow", where, as on the real system, windows on Spaces that are not active do not show. A window's
/// element has "AXRole", "AXTitle", "AXPosition", "AXSize", "AXMinimized", "AXMain" and "AXCloseButton" and the action
/// "AXRaise"; its position and size, "AXMinimized" and "AXMain" can be set. The state must outlive it.
[[nodiscard]] AXUIElement makeApplicationElement(DesktopState& state, ProcessID pid);

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
  [[nodiscard]] const SimulatedElement* asked(const AXUIElement& element) const;

  DesktopState& state_;
  MissionControl& missionControl_;
  Journal& journal_;
};

}  // namespace tallowin
