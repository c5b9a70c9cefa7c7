#include "platform/simulated/simulated_accessibility.h"

#include "platform/simulated/application_elements.h"
#include "platform/simulated/window_element.h"

namespace tallowin {

namespace {

const EmulatedElement* emulated(const AXUIElement& element) {
  return dynamic_cast<const EmulatedElement*>(element.get());
}

/// Whether the application behind the element answers before the messaging timeout.
bool answers(const EmulatedElement& element) {
  const auto* const part = dynamic_cast<const ApplicationPart*>(&element);
  return part == nullptr || part->answers();
}

std::string textOf(const EmulatedElement& element, std::string_view attribute) {
  const auto value = element.attribute(attribute);
  const auto* const text = std::get_if<std::string>(&value);
  return text != nullptr ? *text : "";
}

/// What tells the reader of the journal which element it is.
nlohmann::ordered_json described(const EmulatedElement& element) {
  nlohmann::ordered_json description = {{"role", textOf(element, "AXRole")}};
  if (const auto* const window = dynamic_cast<const WindowElement*>(&element)) {
    description["window"] = window->number();
  }
  for (const auto* const attribute : {"AXTitle", "AXDescription"}) {
    if (auto text = textOf(element, attribute); !text.empty()) {
      description[attribute] = std::move(text);
    }
  }
  return description;
}

struct ValueAsJSON {
  nlohmann::ordered_json operator()(std::monostate /*none*/) const { return nullptr; }
  nlohmann::ordered_json operator()(bool value) const { return value; }
  nlohmann::ordered_json operator()(const std::string& value) const { return value; }
  nlohmann::ordered_json operator()(CGPoint value) const { return {value.x, value.y}; }
  nlohmann::ordered_json operator()(CGSize value) const { return {value.width, value.height}; }
  nlohmann::ordered_json operator()(const AXUIElement& /*value*/) const { return "an element"; }
  nlohmann::ordered_json operator()(const std::vector<AXUIElement>& /*value*/) const { return "elements"; }
};

}  // namespace

bool SimulatedAccessibility::AXIsProcessTrustedWithOptions(bool prompt) {
  journal_.record("AXIsProcessTrustedWithOptions", {{"prompt", prompt}});
  return state_.accessibilityAllowed;
}

AXUIElement SimulatedAccessibility::AXUIElementCreateApplication(ProcessID pid) {
  const auto* const application = state_.application(pid);
  return application != nullptr && application->bundleIdentifier == "com.apple.dock"
             ? missionControl_.dockElement()
             : makeApplicationElement(state_, pid);
}

void SimulatedAccessibility::AXUIElementSetMessagingTimeout(const AXUIElement& element, Duration timeout) {
  if (const auto* const part = dynamic_cast<const ApplicationPart*>(element.get())) {
    part->setMessagingTimeout(timeout);
  }
}

const EmulatedElement* SimulatedAccessibility::asked(const AXUIElement& element) const {
  return state_.accessibilityAllowed ? emulated(element) : nullptr;
}

AXValue SimulatedAccessibility::AXUIElementCopyAttributeValue(const AXUIElement& element, std::string_view attribute) {
  const auto* const known = asked(element);
  return known != nullptr && answers(*known) ? known->attribute(attribute) : AXValue();
}

bool SimulatedAccessibility::AXUIElementSetAttributeValue(const AXUIElement& element, std::string_view attribute,
                                                          const AXValue& value) {
  const auto* const known = asked(element);
  if (known == nullptr) {
    return false;
  }
  journal_.record(
      "AXUIElementSetAttributeValue",
      {{"element", described(*known)}, {"attribute", attribute}, {"value", std::visit(ValueAsJSON{}, value)}});
  return answers(*known) && known->setAttribute(attribute, value);
}

bool SimulatedAccessibility::AXUIElementPerformAction(const AXUIElement& element, std::string_view action) {
  const auto* const known = asked(element);
  if (known == nullptr) {
    return false;
  }
  journal_.record("AXUIElementPerformAction", {{"element", described(*known)}, {"action", action}});
  return answers(*known) && known->perform(action);
}

}  // namespace tallowin
