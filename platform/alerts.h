#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace tallowin {

/// A question to the user (NSAlert).
struct Alert {
  std::string messageText;
  std::string informativeText;
  std::vector<std::string> buttons;  ///< the first one is the default; at least one
};

/// Asks the user. Main thread only.
class Alerts {
 public:
  virtual ~Alerts() = default;

  /// Shows `alert` without blocking. `answered` runs once on the main thread with the index of the button pressed, or
  /// with nothing when the alert was closed without an answer or could not be shown.
  virtual void show(const Alert& alert, std::function<void(std::optional<std::size_t>)> answered) = 0;
};

}  // namespace tallowin
