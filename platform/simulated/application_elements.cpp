#include "platform/simulated/application_elements.h"

#include <algorithm>

#include "platform/simulated/window_element.h"

namespace tallowin {

namespace {

class CloseButton : public ApplicationPart {
 public:
  CloseButton(const ApplicationPart& parent, WindowNumber window) : ApplicationPart(parent), window_(window) {}

  [[nodiscard]] AXValue attribute(std::string_view name) const override {
    return name == "AXRole" ? AXValue("AXButton") : AXValue();
  }

  bool perform(std::string_view action) const override {
    const auto* const application = state().application(pid());
    if (action != "AXPress" || application == nullptr || state().window(window_) == nullptr) {
      return false;
    }
    if (!application->refusesClose) {
      std::erase_if(state().windows, [this](const SimulatedWindow& window) { return window.number == window_; });
    }
    return true;
  }

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
    return flag != nullptr && name == "AXMain" && (!*flag || raise());
  }

  bool perform(std::string_view action) const override { return action == "AXRaise" && raise(); }

 private:
  [[nodiscard]] bool isFirstOfItsApplication(const SimulatedWindow& window) const {
    const auto& windows = state().windows;
    const auto first = std::ranges::find(windows, window.pid, &SimulatedWindow::pid);
    return first != windows.end() && first->number == window.number;
  }

  /// In front of the other windows of its application; in front of all when that is the active one.
  [[nodiscard]] bool raise() const {
    auto& windows = state().windows;
    const auto window = std::ranges::find(windows, number(), &SimulatedWindow::number);
    if (window == windows.end()) {
      return false;
    }
    const auto* const owner = state().application(window->pid);
    const bool isActive = owner != nullptr && owner->isActive;
    const auto first = isActive ? windows.begin() : std::ranges::find(windows, window->pid, &SimulatedWindow::pid);
    std::rotate(first, window, std::next(window));
    return true;
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

}  // namespace tallowin
