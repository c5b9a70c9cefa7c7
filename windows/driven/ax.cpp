#include "windows/driven/ax.h"

#include <algorithm>

namespace tallowin {

namespace {

/// The value, if it is of this type.
template <typename Type>
std::optional<Type> as(AXValue value) {
  auto* const found = std::get_if<Type>(&value);
  return found != nullptr ? std::optional(std::move(*found)) : std::nullopt;
}

}  // namespace

AXValue AX::value(const AXUIElement& element, std::string_view attribute) const {
  return element != nullptr ? accessibility_.AXUIElementCopyAttributeValue(element, attribute) : AXValue();
}

AXUIElement AX::application(ProcessID pid, Duration timeout) const {
  if (!isTrusted()) {
    return nullptr;
  }
  auto element = accessibility_.AXUIElementCreateApplication(pid);
  accessibility_.AXUIElementSetMessagingTimeout(element, timeout);
  return element;
}

std::optional<WindowNumber> AX::focusedWindowID(ProcessID pid) const {
  const auto focused = as<AXUIElement>(value(application(pid), "AXFocusedWindow"));
  const auto number = focused && *focused != nullptr ? windowServer_.CGSBridgeAXWindowID(*focused) : std::nullopt;
  return number != 0U ? number : std::nullopt;
}

std::vector<AXUIElement> AX::windows(const AXUIElement& appElement) const {
  return elements(appElement, "AXWindows");
}

AXUIElement AX::element(WindowNumber window, ProcessID pid, Duration timeout) const {
  const auto candidates = windows(application(pid, timeout));
  const auto found = std::ranges::find_if(
      candidates, [&](const AXUIElement& candidate) { return windowServer_.CGSBridgeAXWindowID(candidate) == window; });
  return found != candidates.end() ? *found : nullptr;
}

std::optional<std::string> AX::text(const AXUIElement& element, std::string_view attribute) const {
  return as<std::string>(value(element, attribute));
}

std::vector<AXUIElement> AX::elements(const AXUIElement& element, std::string_view attribute) const {
  auto list = as<std::vector<AXUIElement>>(value(element, attribute)).value_or(std::vector<AXUIElement>());
  std::erase(list, nullptr);
  return list;
}

std::optional<CGRect> AX::frame(const AXUIElement& element) const {
  const auto position = as<CGPoint>(value(element, "AXPosition"));
  const auto size = as<CGSize>(value(element, "AXSize"));
  return position && size ? std::optional(CGRect{*position, *size}) : std::nullopt;
}

bool AX::set(const AXUIElement& element, std::string_view attribute, const AXValue& value) const {
  return element != nullptr && accessibility_.AXUIElementSetAttributeValue(element, attribute, value);
}

bool AX::perform(const AXUIElement& element, std::string_view action) const {
  return element != nullptr && accessibility_.AXUIElementPerformAction(element, action);
}

bool AX::setFrame(const AXUIElement& element, const CGRect& rect) const {
  const bool moved = set(element, "AXPosition", rect.origin);
  const bool resized = set(element, "AXSize", rect.size);
  return moved && resized;
}

bool AX::isMinimized(const AXUIElement& element) const {
  return as<bool>(value(element, "AXMinimized")).value_or(false);
}

bool AX::setMinimized(const AXUIElement& element, bool minimized) const {
  return set(element, "AXMinimized", minimized);
}

bool AX::raise(const AXUIElement& element) const {
  const bool isMain = set(element, "AXMain", true);
  const bool isRaised = perform(element, "AXRaise");
  return isMain && isRaised;
}

bool AX::press(const AXUIElement& element) const {
  return perform(element, "AXPress");
}

bool AX::close(const AXUIElement& element) const {
  return press(as<AXUIElement>(value(element, "AXCloseButton")).value_or(nullptr));
}

}  // namespace tallowin
