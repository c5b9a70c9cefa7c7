#pragma once

#include <chrono>
#include <memory>

#include "platform/emulated/emulated_element.h"
#include "platform/simulated/desktop_state.h"

namespace tallowin {

/// An accessibility element that a simulated application answers for, if it answers at all. The state must outlive it.
/// Main thread only.
class ApplicationPart : public EmulatedElement {
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
      : EmulatedElement(parent), state_(parent.state_), pid_(parent.pid_), timeout_(parent.timeout_) {}

  [[nodiscard]] DesktopState& state() const { return state_; }

 private:
  DesktopState& state_;
  const ProcessID pid_;
  // Shared by an application's element and all those reached through it.
  const std::shared_ptr<Duration> timeout_;
};

}  // namespace tallowin
