#include "app/preview_refresh.h"

#include <chrono>
#include <cmath>

namespace tallowin {

namespace {

constexpr Duration tolerance = std::chrono::milliseconds(200);

}  // namespace

void PreviewRefresh::capture(Duration delay) {
  if (areWanted() && services_.screenCapture.CGPreflightScreenCaptureAccess()) {
    services_.thumbnails.captureActiveSpaces(services_.watcher.latest(), delay, [](const auto& /*written*/) {});
  }
}

void PreviewRefresh::startRefreshTimer() {
  if (const auto wanted = interval(); wanted != interval_) {
    interval_ = wanted;
    timer_.cancel();
    if (interval_ != Duration::zero()) {
      timer_ = services_.mainQueue.every(interval_, tolerance, [this] { capture(Duration::zero()); });
    }
  }
}

bool PreviewRefresh::areWanted() const {
  return !asleep_ && services_.settings.get(setting::thumbnailsEnabled) && services_.display.wantsPreviews();
}

Duration PreviewRefresh::interval() const {
  constexpr double shortest = 1;
  constexpr double longest = 86'400;
  if (!areWanted()) {
    return Duration::zero();
  }
  // fmax makes a number of what is none.
  const auto seconds =
      std::fmin(std::fmax(services_.settings.get(setting::thumbnailRefreshInterval), shortest), longest);
  return std::chrono::duration_cast<Duration>(std::chrono::duration<double>(seconds));
}

void PreviewRefresh::screensDidSleep() {
  asleep_ = true;
  startRefreshTimer();
}

void PreviewRefresh::screensDidWake() {
  asleep_ = false;
  startRefreshTimer();
}

}  // namespace tallowin
