#include "platform/linux/lazy_images.h"

#include <utility>

#include "platform/linux/program_module.h"

namespace tallowin {

Images* LazyImages::images() {
  if (!std::exchange(looked_, true)) {
    if (auto* const makeImages = programModuleFunction(TALLOWIN_PICTURES_MODULE, picturesModuleEntry)) {
      images_.reset(reinterpret_cast<PicturesModuleEntry>(makeImages)(drawsLabels_));
    } else {
      log_.error("LazyImages", "there are no pictures: " TALLOWIN_PICTURES_MODULE " cannot be loaded");
    }
  }
  return images_.get();
}

std::optional<Image> LazyImages::decode(std::string_view bytes) {
  return images() != nullptr ? images_->decode(bytes) : std::nullopt;
}

std::optional<Image> LazyImages::scaled(const Image& image, int width, int height) {
  return images() != nullptr ? images_->scaled(image, width, height) : std::nullopt;
}

std::string LazyImages::encodePNG(const Image& image) {
  return images() != nullptr ? images_->encodePNG(image) : std::string();
}

std::string LazyImages::encodeJPEG(const Image& image, int quality) {
  return images() != nullptr ? images_->encodeJPEG(image, quality) : std::string();
}

std::optional<Image> LazyImages::sketch(int width, int height, const std::vector<SketchBox>& boxes) {
  return images() != nullptr ? images_->sketch(width, height, boxes) : std::nullopt;
}

}  // namespace tallowin
