#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <string>

#include "platform/alerts.h"
#include "platform/subscription.h"

namespace tallowin {

/// Puts open questions in front of the user, where the desktop has a way to. Main thread only.
class AlertDisplay {
 public:
  using Answered = std::function<void(std::optional<std::size_t>)>;

  virtual ~AlertDisplay() = default;

  /// Shows `alert` without blocking, until the subscription is let go of, which must be before the display goes.
  /// `answered` runs at most once, and never inside this call: with the index of the button pressed, or with nothing
  /// when the user closed the question. It does not run when there is no way to show or to answer it here.
  /// `howToAnswer` is a sentence for displays without buttons.
  virtual Subscription show(const Alert& alert, const std::string& howToAnswer, Answered answered) = 0;
};

}  // namespace tallowin
