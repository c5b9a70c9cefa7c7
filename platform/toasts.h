#pragma once

#include <optional>
#include <string>

namespace tallowin {

/// A short message that the user sees for a moment.
struct Toast {
  std::string text;
  std::optional<std::string> symbol;  ///< name of a system symbol image
  bool isError = false;
  bool operator==(const Toast&) const = default;
};

/// Shows messages, each in place of the last one. Main thread only.
class Toasts {
 public:
  virtual ~Toasts() = default;

  virtual void show(const Toast& toast) = 0;
};

}  // namespace tallowin
