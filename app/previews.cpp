#include "app/previews.h"

#include <cmath>

#include "core/display_lookup.h"
#include "presentation/presentation.h"

namespace tallowin {

namespace {

constexpr int previewWidth = 640;
constexpr int previewQuality = 80;
constexpr Duration previewTolerance = std::chrono::milliseconds(200);

}  // namespace

std::filesystem::path PreviewService::imageFile(const Space& space) const {
  // An id is whatever the window server says, and must not lead out of the folder.
  return paths_.thumbnailsDirectory() / (asFileName(space.id) + ".jpg");
}

void PreviewService::captureActiveSpaces(const SpaceSnapshot& snapshot, Duration delay,
                                         std::function<void(const std::set<std::string>&)> captured) {
  work_ = platform_.mainQueue.after(delay, [this, spaces = snapshot.activeSpaces(), captured = std::move(captured)] {
    std::set<std::string> written;
    for (const auto& space : spaces) {
      if (capture(space)) {
        written.insert(space.id);
      }
    }
    captured(written);
  });
}

bool PreviewService::capture(const Space& space) {
  const auto display = displayWithIdentifier(platform_.displays, space.displayID);
  const auto preview = platform_.screenCapture.capturePreview(display, previewWidth, previewQuality, platform_.images);
  return preview && platform_.files.writeAtomically(imageFile(space), *preview, 0600).has_value();
}

void PreviewRefresh::capture(Duration delay) {
  if (areWanted() && services_.screenCapture.CGPreflightScreenCaptureAccess()) {
    thumbnails_.captureActiveSpaces(services_.watcher.latest(), delay, [](const auto& /*written*/) {});
  }
}

void PreviewRefresh::startRefreshTimer() {
  if (const auto wanted = interval(); wanted != interval_) {
    interval_ = wanted;
    timer_.cancel();
    if (interval_ != Duration::zero()) {
      timer_ = services_.mainQueue.every(interval_, previewTolerance, [this] { capture(Duration::zero()); });
    }
  }
}

bool PreviewRefresh::areWanted() const {
  return !asleep_ && services_.settings.get(setting::thumbnailsEnabled) && services_.presentation.wantsPreviews();
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
