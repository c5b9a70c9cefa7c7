#include "platform/simulated/simulated_alerts.h"

#include <algorithm>
#include <utility>

#include "base/unicode.h"

namespace tallowin {

void SimulatedAlerts::show(const Alert& alert, std::function<void(std::optional<std::size_t>)> answered) {
  journal_.record(
      "alert",
      {{"messageText", alert.messageText}, {"informativeText", alert.informativeText}, {"buttons", alert.buttons}});
  shown_.push_back({alert, std::move(answered)});
}

void SimulatedAlerts::press(const std::optional<std::string>& button) {
  if (shown_.empty()) {
    return;
  }
  std::optional<std::size_t> index;
  if (button) {
    const auto& buttons = shown_.back().alert.buttons;
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

std::expected<std::string, std::string> SimulatedAlerts::answer(std::string_view button) {
  for (auto shown = shown_.begin(); shown != shown_.end(); ++shown) {
    const auto& buttons = shown->alert.buttons;
    const auto found = std::ranges::find_if(buttons, [&](const auto& name) { return equalIgnoringCase(name, button); });
    if (found != buttons.end()) {
      const auto index = static_cast<std::size_t>(found - buttons.begin());
      auto line = shown->alert.messageText + ' ' + *found;
      const auto answered = std::move(shown->answered);
      shown_.erase(shown);
      answered(index);
      return line;
    }
  }
  return std::unexpected("nothing is asked that has this button");
}

}  // namespace tallowin
