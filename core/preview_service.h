#pragma once

#include <filesystem>
#include <functional>
#include <set>
#include <string>

#include "base/app_paths.h"
#include "core/space.h"
#include "platform/displays.h"
#include "platform/images.h"
#include "platform/main_queue.h"
#include "platform/screen_capture.h"

namespace tallowin {

/// Keeps a preview image of each Space in the thumbnails folder, as it looked when it was last captured. Main thread
/// only.
class PreviewService {
 public:
  struct Services {
    ScreenCapture& screenCapture;
    Displays& displays;
    Images& images;
    Files& files;
    MainQueue& mainQueue;
    const AppPaths& paths;
  };

  explicit PreviewService(Services services) : services_(services) {}

  /// Captures what every display shows `delay` from now as the preview of its active Space: a JPEG about 640 points
  /// wide. In place of a capture that waits. `captured` is then told the ids of the Spaces whose image was written.
  void captureActiveSpaces(const SpaceSnapshot& snapshot, Duration delay,
                           std::function<void(const std::set<std::string>&)> captured);

  /// Where the preview of a Space is kept, whether or not there is one.
  [[nodiscard]] std::filesystem::path imageFile(const Space& space) const;

 private:
  [[nodiscard]] bool capture(const Space& space);

  const Services services_;
  WorkItem work_;
};

}  // namespace tallowin
