#include "platform/simulated/simulated_alerts.h"

#include <algorithm>
#include <utility>

namespace tallowin {

void SimulatedAlerts::show(const Alert& alert, std::function<void(std::optional<std::size_t>)> answered) {
  journal_.record(
      "alert",
      {{"messageText", alert.messageText}, {"informativeText", alert.informativeText}, {"buttons", alert.buttons}});
  shown_.push_back({alert.buttons, std::move(answered)});
}

void SimulatedAlerts::answer(const std::optional<std::string>& button) {
  if (shown_.empty()) {
    return;
  }
  std::optional<std::size_t> index;
  if (button) {
    const auto& buttons = shown_.back().buttons;
    const auto found = std::ranges::find(buttons, *button);
    if (found == buttons.end()) {
      return;
    }
    index = static_cast<std::size_t>(found - buttons.begin());
  }
  const auto answered = std::move(shown_.back().answered);
  shown_.pop_back();
  answered(index);
}

}  // namespace tallowin
