#include "platform/x11/x11_window_list.h"

namespace tallowin {

namespace {

PropertyList describe(const X11Window& window, WindowNumber number, const X11Application* owner) {
  PropertyList description = {
      {"kCGWindowLayer", window.layer},
      {"kCGWindowOwnerPID", window.pid},
      {"kCGWindowNumber", number},
      {"kCGWindowBounds",
       {{"X", window.frame.origin.x},
        {"Y", window.frame.origin.y},
        {"Width", window.frame.size.width},
        {"Height", window.frame.size.height}}},
      {"kCGWindowAlpha", window.alpha},
      {"kCGWindowName", window.title},
  };
  if (owner != nullptr && !owner->name.empty()) {
    description["kCGWindowOwnerName"] = owner->name;
  }
  return description;
}

}  // namespace

std::optional<PropertyList> X11WindowList::CGWindowListCopyWindowInfo(std::uint32_t options, WindowNumber relativeTo) {
  const auto& numbers = reader_.numbers();
  auto list = PropertyList::array();
  if ((options & CGWindowListOption::includingWindow) != 0) {
    const auto id = numbers.window(relativeTo);
    if (const auto window = id ? reader_.read(*id) : std::nullopt) {
      list.push_back(describe(*window, relativeTo, applications_.latest()->find(window->pid)));
    }
  } else {
    const auto snapshot = applications_.refresh();
    for (const auto& window : snapshot->screen.windows) {
      const bool excluded =
          ((options & CGWindowListOption::onScreenOnly) != 0 && !snapshot->screen.isOnScreen(window)) ||
          ((options & CGWindowListOption::excludeDesktopElements) != 0 && window.layer < 0);
      const auto number = numbers.number(window.id);
      if (!excluded && number) {
        list.push_back(describe(window, *number, snapshot->find(window.pid)));
      }
    }
  }
  return connection_.alive() ? std::optional(std::move(list)) : std::nullopt;
}

}  // namespace tallowin
