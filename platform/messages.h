#pragma once

#include <cstddef>
#include <expected>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

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

/// A question to the user (NSAlert).
struct Alert {
  std::string messageText;
  std::string informativeText;
  std::vector<std::string> buttons;  ///< the first one is the default; at least one
  bool operator==(const Alert&) const = default;
};

/// Asks the user. Main thread only.
class Alerts {
 public:
  virtual ~Alerts() = default;

  /// Shows `alert` without blocking. `answered` runs at most once on the main thread with the index of the button
  /// pressed, or with nothing when the alert was closed without an answer or, then maybe inside this call, could not be
  /// shown. Questions that are open when this object goes are never answered.
  virtual void show(const Alert& alert, std::function<void(std::optional<std::size_t>)> answered) = 0;

  /// Answers an open question from outside: the oldest that has this button, whatever its case; where none has, the
  /// oldest that has a button of this number, counted from 1. The result is the question and the button in one line.
  /// The error is one line that says what can be answered.
  virtual std::expected<std::string, std::string> answer(std::string_view button) = 0;
};

}  // namespace tallowin
