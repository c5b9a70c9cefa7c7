#include "platform/x11/x11_elements.h"

#include <algorithm>

namespace tallowin {

namespace {

using WeakContext = std::weak_ptr<X11ElementContext>;

class CloseButton : public EmulatedElement {
 public:
  CloseButton(WeakContext context, WindowNumber number) : context_(std::move(context)), number_(number) {}

  [[nodiscard]] AXValue attribute(std::string_view name) const override {
    return name == "AXRole" ? AXValue("AXButton") : AXValue();
  }

  bool perform(std::string_view action) const override {
    const auto context = context_.lock();
    const auto window = context == nullptr ? std::nullopt : context->reader.numbers().window(number_);
    return window && action == "AXPress" && context->actions.close(*window);
  }

 private:
  const WeakContext context_;
  const WindowNumber number_;
};

class ApplicationElement : public EmulatedElement {
 public:
  ApplicationElement(WeakContext context, ProcessID pid) : context_(std::move(context)), pid_(pid) {}

  [[nodiscard]] AXValue attribute(std::string_view name) const override {
    const auto context = context_.lock();
    const auto snapshot = context == nullptr ? nullptr : context->applications.latest();
    const auto* application = snapshot == nullptr ? nullptr : snapshot->find(pid_);
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
      return context->applications.running(*application).isHidden;
    }
    if (name == "AXWindows" || name == "AXChildren") {
      return windows(*context, *snapshot, *application);
    }
    return name == "AXFocusedWindow" ? focused(*context, *snapshot, *application) : AXValue();
  }

 private:
  /// Null when the window has gone since it was read.
  [[nodiscard]] AXUIElement element(X11ElementContext& context, xcb_window_t window) const {
    const auto number = context.reader.numbers().number(window);
    return number ? std::make_shared<X11WindowElement>(context_, *number) : nullptr;
  }

  [[nodiscard]] std::vector<AXUIElement> windows(X11ElementContext& context, const X11ApplicationSnapshot& snapshot,
                                                 const X11Application& application) const {
    std::vector<AXUIElement> elements;
    for (const auto window : application.windows) {
      if (snapshot.screen.find(window)->layer == 0) {
        elements.push_back(element(context, window));
      }
    }
    std::erase(elements, nullptr);
    return elements;
  }

  [[nodiscard]] AXValue focused(X11ElementContext& context, const X11ApplicationSnapshot& snapshot,
                                const X11Application& application) const {
    const auto active = context.applications.activeWindow();
    if (std::ranges::find(application.windows, active) != application.windows.end()) {
      return element(context, active);
    }
    const auto elements = windows(context, snapshot, application);
    return elements.empty() ? AXValue() : AXValue(elements.front());
  }

  const WeakContext context_;
  const ProcessID pid_;
};

}  // namespace

AXValue X11WindowElement::attribute(std::string_view name) const {
  const auto context = context_.lock();
  const auto id = context == nullptr ? std::nullopt : context->reader.numbers().window(number_);
  const auto window = id ? context->reader.read(*id) : std::nullopt;
  if (!window) {
    return {};
  }
  if (name == "AXCloseButton") {
    return AXUIElement(std::make_shared<CloseButton>(context_, number_));
  }
  if (name == "AXMain") {
    return context->applications.activeWindow() == *id;
  }
  const std::pair<std::string_view, AXValue> attributes[] = {
      {"AXRole", "AXWindow"},         {"AXTitle", window->title},      {"AXPosition", window->frame.origin},
      {"AXSize", window->frame.size}, {"AXMinimized", window->hidden}, {"AXFullScreen", window->fullscreen},
  };
  const auto* const found = std::ranges::find(attributes, name, [](const auto& attribute) { return attribute.first; });
  return found == std::ranges::end(attributes) ? AXValue() : found->second;
}

bool X11WindowElement::setAttribute(std::string_view name, const AXValue& value) const {
  const auto context = context_.lock();
  const auto id = context == nullptr ? std::nullopt : context->reader.numbers().window(number_);
  if (!id) {
    return false;
  }
  auto& actions = context->actions;
  if (const auto* point = std::get_if<CGPoint>(&value)) {
    return name == "AXPosition" && actions.setPosition(*id, *point);
  }
  if (const auto* size = std::get_if<CGSize>(&value)) {
    return name == "AXSize" && actions.setSize(*id, *size);
  }
  const auto* const flag = std::get_if<bool>(&value);
  if (flag != nullptr && name == "AXMinimized") {
    return *flag ? actions.minimize(*id) : actions.restore(*id);
  }
  if (flag == nullptr || !*flag || name != "AXMain") {
    return false;
  }
  const auto window = context->reader.read(*id);
  if (window) {
    context->mainWindows[window->pid] = *id;
  }
  return window.has_value();
}

bool X11WindowElement::perform(std::string_view action) const {
  const auto context = context_.lock();
  const auto id = context == nullptr ? std::nullopt : context->reader.numbers().window(number_);
  return id && action == "AXRaise" && context->actions.raise(*id);
}

AXUIElement makeX11ApplicationElement(std::weak_ptr<X11ElementContext> context, ProcessID pid) {
  return std::make_shared<ApplicationElement>(std::move(context), pid);
}

}  // namespace tallowin
