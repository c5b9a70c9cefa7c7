#pragma once

#include "platform/emulated/emulated_element.h"
#include "platform/identifiers.h"

namespace tallowin {

/// An accessibility element that stands for a window of the window server.
class WindowElement : public EmulatedElement {
 public:
  explicit WindowElement(WindowNumber number) : number_(number) {}
  [[nodiscard]] WindowNumber number() const { return number_; }

 private:
  const WindowNumber number_;
};

}  // namespace tallowin
