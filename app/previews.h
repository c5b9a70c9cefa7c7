#pragma once

#include <filesystem>
#include <functional>
#include <set>
#include <string>

#include "base/app_paths.h"
#include "core/program_services.h"

namespace tallowin {

/// Keeps a preview image of each Space in the thumbnails folder, as it looked when it was last captured. Main thread
/// only.
class PreviewService {
 public:
  PreviewService(const Platform& platform, const AppPaths& paths) : platform_(platform), paths_(paths) {}

  /// Captures what every display shows `delay` from now as the preview of its active Space: a JPEG about 640 points
  /// wide. In place of a capture that waits. `captured` is then told the ids of the Spaces whose image was written.
  void captureActiveSpaces(const SpaceSnapshot& snapshot, Duration delay,
                           std::function<void(const std::set<std::string>&)> captured);

  /// Where the preview of a Space is kept, whether or not there is one.
  [[nodiscard]] std::filesystem::path imageFile(const Space& space) const;

 private:
  [[nodiscard]] bool capture(const Space& space);

  const Platform& platform_;
  const AppPaths& paths_;
  WorkItem work_;
};

/// Keeps the previews of the Spaces fresh, while something shows them, the setting "thumbnailsEnabled" is on and the
/// user allows captures. Main thread only.
class PreviewRefresh {
 public:
  PreviewRefresh(const ProgramServices& services, PreviewService& thumbnails)
      : services_(services), thumbnails_(thumbnails) {}
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

  const ProgramServices& services_;
  PreviewService& thumbnails_;
  Duration interval_ = Duration::zero();  ///< of the timer that runs; zero when none does
  WorkItem timer_;
  bool asleep_ = false;
};

}  // namespace tallowin
