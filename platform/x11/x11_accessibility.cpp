#include "platform/x11/x11_accessibility.h"

#include <xcb/xtest.h>

#include "platform/x11/x11_process_identity.h"

namespace tallowin {

namespace {

const EmulatedElement* emulated(const AXUIElement& element) {
  return dynamic_cast<const EmulatedElement*>(element.get());
}

}  // namespace

bool X11Accessibility::AXIsProcessTrusted() {
  return connection_.alive() && connection_.hasExtension(xcb_test_id);
}

bool X11Accessibility::AXIsProcessTrustedWithOptions(bool /*prompt*/) {
  return AXIsProcessTrusted();
}

AXUIElement X11Accessibility::AXUIElementCreateApplication(ProcessID pid) {
  return pid == dockPid ? missionControl_.dockElement() : makeX11ApplicationElement(context_, pid);
}

void X11Accessibility::AXUIElementSetMessagingTimeout(const AXUIElement& /*element*/, Duration /*timeout*/) {}

AXValue X11Accessibility::AXUIElementCopyAttributeValue(const AXUIElement& element, std::string_view attribute) {
  const auto* const known = emulated(element);
  return known != nullptr && AXIsProcessTrusted() ? known->attribute(attribute) : AXValue();
}

bool X11Accessibility::AXUIElementSetAttributeValue(const AXUIElement& element, std::string_view attribute,
                                                    const AXValue& value) {
  const auto* const known = emulated(element);
  return known != nullptr && AXIsProcessTrusted() && known->setAttribute(attribute, value);
}

bool X11Accessibility::AXUIElementPerformAction(const AXUIElement& element, std::string_view action) {
  const auto* const known = emulated(element);
  return known != nullptr && AXIsProcessTrusted() && known->perform(action);
}

}  // namespace tallowin
