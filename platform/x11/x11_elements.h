#pragma once

#include <map>

#include "platform/emulated/emulated_element.h"
#include "platform/x11/x11_applications.h"
#include "platform/x11/x11_window_actions.h"

namespace tallowin {

/// What the elements of applications and windows work with. Main thread only.
struct X11ElementContext {
  X11WindowReader& reader;
  X11Applications& applications;
  X11WindowActions& actions;
  /// The window of each application that was made its main one last, to be made active with the application.
  std::map<ProcessID, xcb_window_t> mainWindows = {};
};

/// A window element, which knows its number. Every attribute is read from the server when it is asked for.
class X11WindowElement : public EmulatedElement {
 public:
  // The context is shared with the desktop that made it, which may end before the element: then it answers nothing.
  X11WindowElement(std::weak_ptr<X11ElementContext> context, WindowNumber number)
      : context_(std::move(context)), number_(number) {}

  /// As X11WindowNumbers has it.
  [[nodiscard]] WindowNumber number() const { return number_; }

  /// "AXRole", "AXTitle", "AXPosition", "AXSize" (the frame with its decoration), "AXMinimized", "AXMain",
  /// "AXFullScreen" and "AXCloseButton".
  [[nodiscard]] AXValue attribute(std::string_view name) const override;
  /// "AXPosition", "AXSize", "AXMinimized", and "AXMain" with true.
  bool setAttribute(std::string_view name, const AXValue& value) const override;
  /// "AXRaise".
  bool perform(std::string_view action) const override;

 private:
  const std::weak_ptr<X11ElementContext> context_;
  const WindowNumber number_;
};

/// An application element: "AXRole", "AXTitle", "AXHidden", "AXWindows" and "AXChildren" (ordinary windows on all
/// desktops, front to back when they were last read), "AXFocusedWindow" (the active window, else its frontmost one).
[[nodiscard]] AXUIElement makeX11ApplicationElement(std::weak_ptr<X11ElementContext> context, ProcessID pid);

}  // namespace tallowin
