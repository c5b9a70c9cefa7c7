#pragma once

#include <cstddef>
#include <cstdint>
#include <expected>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/log.h"
#include "platform/messages.h"
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

/// Questions to the user that can be answered where they are displayed and, as not every desktop can show buttons, by
/// `tallowin answer BUTTON` too. A question stays open until one of the two answers it. Each is in the log with the
/// commands that answer it. Letting go of this answers nobody and takes the questions off the display. Main thread
/// only.
class PendingAlerts : public Alerts {
 public:
  PendingAlerts(AlertDisplay& display, Log& log) : display_(display), log_(log) {}

  void show(const Alert& alert, std::function<void(std::optional<std::size_t>)> answered) override;
  std::expected<std::string, std::string> answer(std::string_view button) override;

 private:
  struct Question {
    std::uint64_t id;
    Alert alert;
    AlertDisplay::Answered answered;
    Subscription displayed;
  };
  struct Choice {
    std::uint64_t question;
    std::size_t button;
    std::string line;  ///< question and button
  };

  [[nodiscard]] std::optional<Choice> choiceNamed(std::string_view button) const;
  [[nodiscard]] std::optional<Choice> choiceNumbered(std::string_view number) const;
  [[nodiscard]] std::string refusal(std::string_view button) const;
  void close(std::uint64_t id, std::optional<std::size_t> button);

  AlertDisplay& display_;
  Log& log_;
  std::vector<Question> open_;  ///< the oldest first
  std::uint64_t lastID_ = 0;
};

}  // namespace tallowin
