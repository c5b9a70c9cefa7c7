#include "platform/simulated/simulated_accessibility.h"

#include <algorithm>

namespace tallowin {

namespace {

class CloseButton : public ApplicationPart {
 public:
  CloseButton(const ApplicationPart& parent, WindowNumber window) : ApplicationPart(parent), window_(window) {}

  [[nodiscard]] AXValue attribute(std::string_view name) const override {
    return name == "AXRole" ? AXValue("AXButton") : AXValue();
  }

  bool perform(std::string_view action) const override { return action == "AXPress" && state().close(window_); }

 private:
  const WindowNumber window_;
};

class OrdinaryWindow : public WindowElement {
 public:
  using WindowElement::WindowElement;

  [[nodiscard]] AXValue attribute(std::string_view name) const override {
    const auto* const window = state().window(number());
    if (window == nullptr) {
      return {};
    }
    if (name == "AXCloseButton") {
      return AXUIElement(std::make_shared<CloseButton>(*this, number()));
    }
    const std::pair<std::string_view, AXValue> attributes[] = {
        {"AXRole", "AXWindow"},
        {"AXTitle", window->title},
        {"AXPosition", window->frame.origin},
        {"AXSize", window->frame.size},
        {"AXMinimized", window->minimized},
        {"AXMain", isFirstOfItsApplication(*window)},
    };
    const auto* const found =
        std::ranges::find(attributes, name, [](const auto& attribute) { return attribute.first; });
    return found == std::ranges::end(attributes) ? AXValue() : found->second;
  }

  bool setAttribute(std::string_view name, const AXValue& value) const override {
    auto* const window = state().window(number());
    if (window == nullptr) {
      return false;
    }
    if (const auto* point = std::get_if<CGPoint>(&value); point != nullptr && name == "AXPosition") {
      window->frame.origin = *point;
      return true;
    }
    if (const auto* size = std::get_if<CGSize>(&value); size != nullptr && name == "AXSize") {
      window->frame.size = *size;
      return true;
    }
    const auto* const flag = std::get_if<bool>(&value);
    if (flag != nullptr && name == "AXMinimized") {
      window->minimized = *flag;
      return true;
    }
    return flag != nullptr && name == "AXMain" && (!*flag || state().raise(number()));
  }

  bool perform(std::string_view action) const override { return action == "AXRaise" && state().raise(number()); }

 private:
  [[nodiscard]] bool isFirstOfItsApplication(const SimulatedWindow& window) const {
    const auto& windows = state().windows;
    const auto first = std::ranges::find(windows, window.pid, &SimulatedWindow::pid);
    return first != windows.end() && first->number == window.number;
  }
};

class Application : public ApplicationPart {
 public:
  Application(DesktopState& state, ProcessID pid) : ApplicationPart(state, pid) {}

  [[nodiscard]] AXValue attribute(std::string_view name) const override {
    const auto* const application = state().application(pid());
    if (application == nullptr) {
      return {};
    }
    if (name == "AXRole") {
      return "AXApplication";
    }
    if (name == "AXTitle") {
      return application->name;
    }
    if (name == "AXHidden") {
      return application->isHidden;
    }
    if (name == "AXWindows" || name == "AXChildren") {
      return windowElements([](const SimulatedWindow&) { return true; });
    }
    if (name != "AXFocusedWindow") {
      return {};
    }
    const auto open = windowElements([](const SimulatedWindow& window) { return !window.minimized; });
    return open.empty() ? AXValue() : AXValue(open.front());
  }

 private:
  [[nodiscard]] std::vector<AXUIElement> windowElements(bool (*wanted)(const SimulatedWindow&)) const {
    std::vector<AXUIElement> elements;
    for (const auto& window : state().windows) {
      const bool here =
          std::ranges::any_of(window.spaces, [&](ManagedSpaceID space) { return state().spaces.isActive(space); });
      if (window.pid == pid() && window.layer == 0 && here && wanted(window)) {
        elements.push_back(std::make_shared<OrdinaryWindow>(*this, window.number));
      }
    }
    return elements;
  }
};

}  // namespace

AXUIElement makeApplicationElement(DesktopState& state, ProcessID pid) {
  return std::make_shared<Application>(state, pid);
}

namespace {

const SimulatedElement* ours(const AXUIElement& element) {
  return dynamic_cast<const SimulatedElement*>(element.get());
}

/// Whether the application behind the element answers before the messaging timeout.
bool answers(const SimulatedElement& element) {
  const auto* const part = dynamic_cast<const ApplicationPart*>(&element);
  return part == nullptr || part->answers();
}

std::string textOf(const SimulatedElement& element, std::string_view attribute) {
  const auto value = element.attribute(attribute);
  const auto* const text = std::get_if<std::string>(&value);
  return text != nullptr ? *text : "";
}

/// What tells the reader of the journal which element it is.
nlohmann::ordered_json described(const SimulatedElement& element) {
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

const SimulatedElement* SimulatedAccessibility::asked(const AXUIElement& element) const {
  return state_.accessibilityAllowed ? ours(element) : nullptr;
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
