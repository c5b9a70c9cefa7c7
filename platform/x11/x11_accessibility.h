#pragma once

#include <memory>

#include "platform/accessibility.h"
#include "platform/emulated/mission_control.h"
#include "platform/x11/x11_connection.h"
#include "platform/x11/x11_elements.h"

namespace tallowin {

/// Applications and their windows as elements, and the emulated Dock. Permission stands for being able to post events,
/// for which the server must have the XTEST extension. Nothing is asked of other applications themselves, so there is
/// no messaging to time out; every wait for the window manager is bounded.
class X11Accessibility : public Accessibility {
 public:
  /// Elements hold `context` weakly: it lives as long as this.
  X11Accessibility(const X11Connection& connection, const MissionControl& missionControl,
                   std::shared_ptr<X11ElementContext> context)
      : connection_(connection), missionControl_(missionControl), context_(std::move(context)) {}

  bool AXIsProcessTrusted() override;
  bool AXIsProcessTrustedWithOptions(bool prompt) override;
  AXUIElement AXUIElementCreateApplication(ProcessID pid) override;
  void AXUIElementSetMessagingTimeout(const AXUIElement& element, Duration timeout) override;
  AXValue AXUIElementCopyAttributeValue(const AXUIElement& element, std::string_view attribute) override;
  bool AXUIElementSetAttributeValue(const AXUIElement& element, std::string_view attribute,
                                    const AXValue& value) override;
  bool AXUIElementPerformAction(const AXUIElement& element, std::string_view action) override;

 private:
  const X11Connection& connection_;
  const MissionControl& missionControl_;
  /// Owned here and, while they are asked something, by elements.
  const std::shared_ptr<X11ElementContext> context_;
};

}  // namespace tallowin
