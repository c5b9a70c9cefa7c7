#pragma once

#include "base/settings.h"
#include "core/preview_service.h"
#include "core/space_watcher.h"
#include "platform/main_queue.h"
#include "platform/presentation.h"
#include "platform/screen_capture.h"

namespace tallowin {

/// Keeps the previews of the Spaces fresh, while something shows them, the setting "thumbnailsEnabled" is on and the
/// user allows captures.
/// Main thread only.
class PreviewRefresh {
 public:
  struct Services {
    PreviewService& thumbnails;
    PreviewDisplay& display;
    ScreenCapture& screenCapture;
    const Settings& settings;
    MainQueue& mainQueue;
    SpaceWatcher& watcher;
  };

  explicit PreviewRefresh(Services services) : services_(services) {}
  PreviewRefresh(const PreviewRefresh&) = delete;
  PreviewRefresh& operator=(const PreviewRefresh&) = delete;

  /// Captures the active Spaces `delay` from now, in place of a capture that waits.
  void capture(Duration delay);

  /// Captures them every "thumbnailRefreshInterval" seconds from now on, in place of a timer that runs. To be called at
  /// the start and when settings have changed; nothing happens when these have not.
  void startRefreshTimer();

  /// Nothing is captured while the screens sleep.
  void screensDidSleep();
  void screensDidWake();

 private:
  [[nodiscard]] bool areWanted() const;
  /// Zero while previews are off.
  [[nodiscard]] Duration interval() const;

  const Services services_;
  Duration interval_ = Duration::zero();  ///< of the timer that runs; zero when none does
  WorkItem timer_;
  bool asleep_ = false;
};

}  // namespace tallowin
