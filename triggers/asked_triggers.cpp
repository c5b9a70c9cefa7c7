#include "triggers/asked_triggers.h"

#include <chrono>
#include <utility>

namespace tallowin {

void AskedTriggers::refresh() {
  lacks_.lack(settings_.get(setting::hotCorner) != HotCorner::none || settings_.get(setting::notchHover),
              "Opening the overview at the screen's edge is not available here");
  lacks_.lack(settings_.get(setting::fourFingerTap), "Opening the overview by touch is not available here");
}

void AskedTriggers::refreshDockGuard(const std::string& currentSpaceID) {
  current_ = currentSpaceID;
  const bool isOn = settings_.get(setting::dockClickProtection);
  lacks_.lack(isOn && services_.panelActivations == nullptr, "Protection from Dock clicks is not available here");
  if (!isOn) {
    activations_.cancel();
  } else if (!activations_ && services_.panelActivations != nullptr) {
    activations_ =
        services_.panelActivations->observe([this] { lastActivation_ = services_.clock.machAbsoluteTime(); });
  }
}

bool AskedTriggers::spaceChanged(const std::string& toSpaceID, bool isOurs) {
  const auto activation = std::exchange(lastActivation_, std::nullopt);
  const bool isPulled = activations_ && !isOurs && activation && !current_.empty() && current_ != toSpaceID &&
                        std::chrono::nanoseconds(services_.clock.machAbsoluteTime() - *activation) < pullTime;
  if (!isPulled) {
    current_ = toSpaceID;
    return false;
  }
  bounceBack_(current_);
  return true;
}

}  // namespace tallowin
