#pragma once

#include "platform/identifiers.h"
#include "platform/simulated/application_part.h"

namespace tallowin {

/// An accessibility element that stands for a window of the window server.
class WindowElement : public ApplicationPart {
 public:
  WindowElement(const ApplicationPart& application, WindowNumber number)
      : ApplicationPart(application), number_(number) {}
  [[nodiscard]] WindowNumber number() const { return number_; }

 private:
  const WindowNumber number_;
};

}  // namespace tallowin
