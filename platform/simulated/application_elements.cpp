#include "platform/simulated/application_elements.h"

#include <algorithm>

#include "platform/simulated/window_element.h"

namespace tallowin {

namespace {

class CloseButton : public EmulatedElement {
 public:
  CloseButton(DesktopState& state, WindowNumber window) : state_(state), window_(window) {}

  [[nodiscard]] AXValue attribute(std::string_view name) const override {
    return name == "AXRole" ? AXValue("AXButton") : AXValue();
  }

  bool perform(std::string_view action) const override {
    return action == "AXPress" && std::erase_if(state_.windows, [this](const SimulatedWindow& window) {
                                    return window.number == window_;
                                  }) > 0;
  }

 private:
  DesktopState& state_;
  const WindowNumber window_;
};

class OrdinaryWindow : public WindowElement {
 public:
  OrdinaryWindow(DesktopState& state, WindowNumber number) : WindowElement(number), state_(state) {}

  [[nodiscard]] AXValue attribute(std::string_view name) const override {
    const auto* const window = state_.window(number());
    if (window == nullptr) {
      return {};
    }
    if (name == "AXCloseButton") {
      return AXUIElement(std::make_shared<CloseButton>(state_, number()));
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
    auto* const window = state_.window(number());
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
    const auto first = std::ranges::find(state_.windows, window.pid, &SimulatedWindow::pid);
    return first != state_.windows.end() && first->number == window.number;
  }

  /// In front of the other windows of its application; in front of all when that is the active one.
  [[nodiscard]] bool raise() const {
    auto& windows = state_.windows;
    const auto window = std::ranges::find(windows, number(), &SimulatedWindow::number);
    if (window == windows.end()) {
      return false;
    }
    const auto* const owner = state_.application(window->pid);
    const bool isActive = owner != nullptr && owner->isActive;
    const auto first = isActive ? windows.begin() : std::ranges::find(windows, window->pid, &SimulatedWindow::pid);
    std::rotate(first, window, std::next(window));
    return true;
  }

  DesktopState& state_;
};

class Application : public EmulatedElement {
 public:
  Application(DesktopState& state, ProcessID pid) : state_(state), pid_(pid) {}

  [[nodiscard]] AXValue attribute(std::string_view name) const override {
    const auto* const application = state_.application(pid_);
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
    auto windows = windowElements();
    if (name == "AXWindows" || name == "AXChildren") {
      return windows;
    }
    return name == "AXFocusedWindow" && !windows.empty() ? AXValue(windows.front()) : AXValue();
  }

 private:
  [[nodiscard]] std::vector<AXUIElement> windowElements() const {
    std::vector<AXUIElement> elements;
    for (const auto& window : state_.windows) {
      const bool here =
          std::ranges::any_of(window.spaces, [&](ManagedSpaceID space) { return state_.spaces.isActive(space); });
      if (window.pid == pid_ && window.layer == 0 && here) {
        elements.push_back(makeWindowElement(state_, window.number));
      }
    }
    return elements;
  }

  DesktopState& state_;
  const ProcessID pid_;
};

}  // namespace

AXUIElement makeApplicationElement(DesktopState& state, ProcessID pid) {
  return std::make_shared<Application>(state, pid);
}

AXUIElement makeWindowElement(DesktopState& state, WindowNumber window) {
  return std::make_shared<OrdinaryWindow>(state, window);
}

}  // namespace tallowin
