#pragma once

#include "platform/window_list.h"
#include "platform/x11/x11_applications.h"

namespace tallowin {

/// The managed windows as the window server's list. The frame with its decoration is the bounds; windows of this
/// process are not listed. Numbers are those of X11WindowNumbers. What is on screen is not minimised and is on the
/// desktop in front. Any thread.
class X11WindowList : public WindowList {
 public:
  X11WindowList(const X11Connection& connection, X11WindowReader& reader, X11Applications& applications)
      : connection_(connection), reader_(reader), applications_(applications) {}

  std::optional<PropertyList> CGWindowListCopyWindowInfo(std::uint32_t options, WindowNumber relativeTo) override;

 private:
  const X11Connection& connection_;
  X11WindowReader& reader_;
  X11Applications& applications_;
};

}  // namespace tallowin
