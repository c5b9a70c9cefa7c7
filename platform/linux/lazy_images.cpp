#include "platform/linux/lazy_images.h"

#include <dlfcn.h>
#include <filesystem>
#include <utility>

namespace tallowin {

void* programModuleFunction(const char* file, const char* function) {
  std::error_code error;
  const auto program = std::filesystem::read_symlink("/proc/self/exe", error);
  auto* const library = ::dlopen((program.parent_path() / file).c_str(), RTLD_LAZY | RTLD_LOCAL);
  return library != nullptr ? ::dlsym(library, function) : nullptr;
}

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
