#pragma once

namespace tallowin {

class Accessibility;
class WindowList;
class WindowServer;

/// What a desktop is driven by that cannot be asked. The rooms called driven alone use it.
struct DrivenServices {
  WindowServer& windowServer;
  Accessibility& accessibility;
  WindowList& windowList;
};

}  // namespace tallowin
