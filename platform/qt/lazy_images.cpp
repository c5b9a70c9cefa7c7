#include "platform/qt/lazy_images.h"

#include "platform/qt/program_module.h"

namespace tallowin {

const PicturesModule* loadPicturesModule() {
  auto* const entry = programModuleFunction(TALLOWIN_PICTURES_MODULE, picturesModuleEntry);
  return entry != nullptr ? reinterpret_cast<PicturesModuleEntry>(entry)() : nullptr;
}

Images* LazyImages::images() {
  if (!std::exchange(looked_, true)) {
    const auto* const module = loadPicturesModule();
    if (module != nullptr) {
      images_.reset(module->makeImages());
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
