#include "platform/simulated/simulated_accessibility.h"

#include <algorithm>
#include <chrono>
#include <memory>

namespace tallowin {

namespace {

/// What the system waits for an answer if nobody has said anything else.
constexpr Duration defaultTimeout = std::chrono::seconds{6};

/// An element that a simulated application answers for, if it answers at all. The state must outlive it.
class ApplicationPart : public SimulatedElement {
 public:
  ApplicationPart(DesktopState& state, ProcessID pid)
      : state_(state), pid_(pid), timeout_(std::make_shared<Duration>(defaultTimeout)) {}

  void setMessagingTimeout(Duration timeout) const override { *timeout_ = timeout; }

  [[nodiscard]] bool answers() const override {
    const auto* const application = state_.application(pid_);
    return application != nullptr && application->responseTime && *application->responseTime <= *timeout_;
  }

 protected:
  DesktopState& state_;
  const ProcessID pid_;

 private:
  // Shared by an application's element and all those reached through it.
  const std::shared_ptr<Duration> timeout_;
};

class CloseButton : public ApplicationPart {
 public:
  CloseButton(const ApplicationPart& parent, WindowNumber window) : ApplicationPart(parent), window_(window) {}

  [[nodiscard]] AXValue attribute(std::string_view name) const override {
    return name == "AXRole" ? AXValue("AXButton") : AXValue();
  }

  bool perform(std::string_view action) const override { return action == "AXPress" && state_.close(window_); }

 private:
  const WindowNumber window_;
};

class WindowElement : public ApplicationPart {
 public:
  WindowElement(const ApplicationPart& application, WindowNumber number)
      : ApplicationPart(application), number_(number) {}

  [[nodiscard]] std::optional<WindowNumber> window() const override { return number_; }

  [[nodiscard]] AXValue attribute(std::string_view name) const override {
    const auto* const window = state_.window(number_);
    if (window == nullptr) {
      return {};
    }
    const auto first = std::ranges::find(state_.windows, window->pid, &SimulatedWindow::pid);
    return name == "AXRole"          ? AXValue("AXWindow")
           : name == "AXTitle"       ? AXValue(window->title)
           : name == "AXPosition"    ? AXValue(window->frame.origin)
           : name == "AXSize"        ? AXValue(window->frame.size)
           : name == "AXMinimized"   ? AXValue(window->minimized)
           : name == "AXMain"        ? AXValue(first->number == number_)
           : name == "AXCloseButton" ? AXValue(std::make_shared<CloseButton>(*this, number_))
                                     : AXValue();
  }

  bool setAttribute(std::string_view name, const AXValue& value) const override {
    auto* const window = state_.window(number_);
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
    return flag != nullptr && name == "AXMain" && (!*flag || state_.raise(number_));
  }

  bool perform(std::string_view action) const override { return action == "AXRaise" && state_.raise(number_); }

 private:
  const WindowNumber number_;
};

class ApplicationElement : public ApplicationPart {
 public:
  using ApplicationPart::ApplicationPart;

  [[nodiscard]] AXValue attribute(std::string_view name) const override {
    const auto* const application = state_.application(pid_);
    if (application == nullptr) {
      return {};
    }
    if (name == "AXFocusedWindow") {
      const auto open = windowElements([](const SimulatedWindow& window) { return !window.minimized; });
      return open.empty() ? AXValue() : AXValue(open.front());
    }
    return name == "AXRole"     ? AXValue("AXApplication")
           : name == "AXTitle"  ? AXValue(application->name)
           : name == "AXHidden" ? AXValue(application->isHidden)
           : name == "AXWindows" || name == "AXChildren"
               ? AXValue(windowElements([](const SimulatedWindow&) { return true; }))
               : AXValue();
  }

 private:
  [[nodiscard]] std::vector<AXUIElement> windowElements(bool (*wanted)(const SimulatedWindow&)) const {
    std::vector<AXUIElement> elements;
    for (const auto& window : state_.windows) {
      const bool here =
          std::ranges::any_of(window.spaces, [&](ManagedSpaceID space) { return state_.spaces.isActive(space); });
      if (window.pid == pid_ && window.layer == 0 && here && wanted(window)) {
        elements.push_back(std::make_shared<WindowElement>(*this, window.number));
      }
    }
    return elements;
  }
};

const SimulatedElement* simulatedElement(const AXUIElement& element) {
  return dynamic_cast<const SimulatedElement*>(element.get());
}

/// What tells the reader of the journal which element it is.
nlohmann::ordered_json identified(const SimulatedElement& element) {
  const auto text = [&](std::string_view attribute) {
    const auto value = element.attribute(attribute);
    const auto* const found = std::get_if<std::string>(&value);
    return found != nullptr ? *found : "";
  };
  nlohmann::ordered_json description = {{"role", text("AXRole")}};
  if (const auto window = element.window()) {
    description["window"] = *window;
  }
  for (const auto* const attribute : {"AXTitle", "AXDescription"}) {
    if (auto words = text(attribute); !words.empty()) {
      description[attribute] = std::move(words);
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
             : std::make_shared<ApplicationElement>(state_, pid);
}

void SimulatedAccessibility::AXUIElementSetMessagingTimeout(const AXUIElement& element, Duration timeout) {
  if (const auto* const known = simulatedElement(element)) {
    known->setMessagingTimeout(timeout);
  }
}

const SimulatedElement* SimulatedAccessibility::asked(const AXUIElement& element) const {
  return state_.accessibilityAllowed ? simulatedElement(element) : nullptr;
}

AXValue SimulatedAccessibility::AXUIElementCopyAttributeValue(const AXUIElement& element, std::string_view attribute) {
  const auto* const known = asked(element);
  return known != nullptr && known->answers() ? known->attribute(attribute) : AXValue();
}

bool SimulatedAccessibility::AXUIElementSetAttributeValue(const AXUIElement& element, std::string_view attribute,
                                                          const AXValue& value) {
  const auto* const known = asked(element);
  if (known == nullptr) {
    return false;
  }
  journal_.record(
      "AXUIElementSetAttributeValue",
      {{"element", identified(*known)}, {"attribute", attribute}, {"value", std::visit(ValueAsJSON{}, value)}});
  return known->answers() && known->setAttribute(attribute, value);
}

bool SimulatedAccessibility::AXUIElementPerformAction(const AXUIElement& element, std::string_view action) {
  const auto* const known = asked(element);
  if (known == nullptr) {
    return false;
  }
  journal_.record("AXUIElementPerformAction", {{"element", identified(*known)}, {"action", action}});
  return known->answers() && known->perform(action);
}

}  // namespace tallowin
