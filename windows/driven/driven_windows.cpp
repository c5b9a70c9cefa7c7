#include "windows/driven/driven_windows.h"

#include <algorithm>
#include <utility>

#include "base/property_list_reading.h"
#include "platform/driven_services.h"

namespace tallowin {

namespace {

namespace plist = property_list;

/// The value, if it is of this type.
template <typename Type>
std::optional<Type> as(AXValue value) {
  auto* const found = std::get_if<Type>(&value);
  return found != nullptr ? std::optional(std::move(*found)) : std::nullopt;
}

std::optional<CGRect> windowBounds(const PropertyList& entry) {
  const auto* const bounds = plist::member(entry, "kCGWindowBounds");
  if (bounds == nullptr) {
    return {};
  }
  const auto number = [&](std::string_view key) { return plist::member(*bounds, key, plist::real); };
  const auto width = number("Width");
  const auto height = number("Height");
  if (!width || !height) {
    return {};
  }
  return CGRect{{number("X").value_or(0), number("Y").value_or(0)}, {*width, *height}};
}

std::optional<DesktopWindow> readWindow(const PropertyList& entry) {
  const auto number = plist::member(entry, "kCGWindowNumber", plist::integer);
  const auto pid = plist::member(entry, "kCGWindowOwnerPID", plist::integer32);
  const auto layer = plist::member(entry, "kCGWindowLayer", plist::integer32);
  const auto bounds = windowBounds(entry);
  if (!number || !std::in_range<WindowNumber>(*number) || !pid || !layer || !bounds) {
    return std::nullopt;
  }
  return DesktopWindow{.id = static_cast<WindowNumber>(*number),
                       .pid = *pid,
                       .ownerName = plist::member(entry, "kCGWindowOwnerName", plist::text),
                       .title = plist::member(entry, "kCGWindowName", plist::text),
                       .frame = *bounds,
                       .layer = *layer,
                       .alpha = plist::member(entry, "kCGWindowAlpha", plist::real).value_or(1),
                       .spaces = std::nullopt};
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

std::optional<std::vector<DesktopWindow>> readWindowList(const PropertyList& list) {
  if (plist::listOfDictionaries(&list) == nullptr) {
    return std::nullopt;
  }
  std::vector<DesktopWindow> windows;
  for (const auto& entry : list) {
    if (auto window = readWindow(entry)) {
      windows.push_back(*std::move(window));
    }
  }
  return windows;
}

DrivenWindows::DrivenWindows(DrivenServices services)
    : windowList_(services.windowList), ax_(services.accessibility, services.windowServer) {}

std::optional<std::vector<DesktopWindow>> DrivenWindows::list(WindowScope scope) {
  const auto onScreen = scope == WindowScope::onScreen ? CGWindowListOption::onScreenOnly : 0;
  const auto list = windowList_.CGWindowListCopyWindowInfo(onScreen | CGWindowListOption::excludeDesktopElements, 0);
  return list ? readWindowList(*list) : std::nullopt;
}

std::optional<DesktopWindow> DrivenWindows::window(WindowNumber window) {
  const auto list = windowList_.CGWindowListCopyWindowInfo(CGWindowListOption::includingWindow, window);
  const auto found = list ? readWindowList(*list) : std::nullopt;
  return found && !found->empty() ? std::optional(found->front()) : std::nullopt;
}

bool DrivenWindows::raise(const WindowRef& window) {
  const auto found = element(window);
  if (found != nullptr) {
    ax_.raise(found);
  }
  return found != nullptr;
}

bool DrivenWindows::setFrame(const WindowRef& window, const CGRect& frame) {
  const auto found = element(window);
  if (found != nullptr && ax_.frame(found) != frame) {
    ax_.setFrame(found, frame);
  }
  return found != nullptr;
}

bool DrivenWindows::minimize(const WindowRef& window) {
  const auto found = element(window);
  return found != nullptr && !ax_.isMinimized(found) && ax_.setMinimized(found, true);
}

bool DrivenWindows::unminimize(const WindowRef& window) {
  return ax_.setMinimized(element(window), false);
}

bool DrivenWindows::close(const WindowRef& window, Duration atMost) {
  return ax_.close(ax_.element(window.id, window.pid, atMost));
}

}  // namespace tallowin
