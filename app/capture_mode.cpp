#include "app/capture_mode.h"

#include "base/app_paths.h"
#include "base/words.h"
#include "commands/exit_status.h"
#include "core/preview_service.h"

namespace tallowin {

int runCapture(const Platform& platform, const SpaceProvider& provider, std::ostream& out) {
  constexpr auto slice = std::chrono::milliseconds(50);
  out << "screen recording granted: " << trueOrFalse(platform.screenCapture.CGPreflightScreenCaptureAccess()) << '\n';
  const auto snapshot = provider.snapshot();
  if (!snapshot) {
    out << "no snapshot\n";
    return exit_status::failure;
  }
  const AppPaths paths(platform.files, platform.folders);
  PreviewService previews(
      {platform.screenCapture, platform.displays, platform.images, platform.files, platform.mainQueue, paths});
  std::optional<std::set<std::string>> captured;
  previews.captureActiveSpaces(*snapshot, Duration::zero(),
                               [&captured](const std::set<std::string>& written) { captured = written; });
  while (!captured && !platform.runLoop.stopped()) {
    platform.runLoop.runFor(slice);
  }
  for (const auto& space : snapshot->activeSpaces()) {
    if (captured && captured->contains(space.id)) {
      out << previews.imageFile(space).string() << '\n';
    } else {
      out << "no image for " << space.id << '\n';
    }
  }
  return platform.runLoop.stopped().value_or(exit_status::success);
}

}  // namespace tallowin
