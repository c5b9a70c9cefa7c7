#include "core/preview_service.h"

#include "core/display_lookup.h"

namespace tallowin {

namespace {

constexpr int previewWidth = 640;
constexpr int previewQuality = 80;

}  // namespace

std::filesystem::path PreviewService::imageFile(const Space& space) const {
  // An id is whatever the window server says, and must not lead out of the folder.
  return services_.paths.thumbnailsDirectory() / (asFileName(space.id) + ".jpg");
}

void PreviewService::captureActiveSpaces(const SpaceSnapshot& snapshot, Duration delay,
                                         std::function<void(const std::set<std::string>&)> captured) {
  work_ = services_.mainQueue.after(delay, [this, spaces = snapshot.activeSpaces(), captured = std::move(captured)] {
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
  const auto display = displayWithIdentifier(services_.displays, space.displayID);
  const auto preview = services_.screenCapture.capturePreview(display, previewWidth, previewQuality, services_.images);
  return preview && services_.files.writeAtomically(imageFile(space), *preview, 0600).has_value();
}

}  // namespace tallowin
