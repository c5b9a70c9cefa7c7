#include "presentation/widgets/status_controls.h"

#include <chrono>

namespace tallowin {

void StatusControls::turnWheel(int eighths, bool switches) {
  if (!switches) {
    return;
  }
  const auto now = std::chrono::steady_clock::now().time_since_epoch();
  const int step = wheel_.turned(eighths, std::chrono::duration_cast<WheelSteps::Time>(now));
  if (step != 0) {
    instance_.perform({step > 0 ? "next" : "previous"});
  }
}

}  // namespace tallowin
