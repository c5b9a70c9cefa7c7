#pragma once

#include <optional>
#include <string_view>
#include <vector>

#include "platform/alerts.h"
#include "platform/simulated/journal.h"

namespace tallowin {

/// Questions to the simulated user, as lines of the journal. They stay until the script answers them. Main thread only.
class SimulatedAlerts : public Alerts {
 public:
  explicit SimulatedAlerts(Journal& journal) : journal_(journal) {}

  void show(const Alert& alert, std::function<void(std::optional<std::size_t>)> answered) override;

  std::expected<std::string, std::string> answer(std::string_view button) override;

  /// The user presses a button of the alert shown last, or closes it when `button` is absent. Nothing happens without
  /// an alert or if it has no such button.
  void press(const std::optional<std::string>& button);

 private:
  struct Shown {
    Alert alert;
    std::function<void(std::optional<std::size_t>)> answered;
  };

  Journal& journal_;
  std::vector<Shown> shown_;  ///< the last one is in front
};

}  // namespace tallowin
