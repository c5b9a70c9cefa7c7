#include "windows/driven/driven_windows.h"

#include <utility>

#include "base/property_list_reading.h"
#include "platform/window_list.h"

namespace tallowin {

namespace {

namespace plist = property_list;

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
