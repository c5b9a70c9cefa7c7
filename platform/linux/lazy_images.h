#pragma once

#include <memory>

#include "platform/images.h"
#include "platform/log.h"
#include "platform/pictures/pictures_module.h"

namespace tallowin {

/// The function of this name in the library `file` from the folder of the running program, which is loaded for good;
/// null when there is none.
[[nodiscard]] void* programModuleFunction(const char* file, const char* function);

/// Pictures by the pictures module, which is loaded when the first one is asked for. Without it there are no pictures,
/// which is said once, in the log. Main thread only.
class LazyImages : public Images {
 public:
  /// Sketches are drawn with their labels if `drawsLabels`.
  LazyImages(Log& log, bool drawsLabels) : log_(log), drawsLabels_(drawsLabels) {}

  std::optional<Image> decode(std::string_view bytes) override;
  std::optional<Image> scaled(const Image& image, int width, int height) override;
  std::string encodePNG(const Image& image) override;
  std::string encodeJPEG(const Image& image, int quality) override;
  std::optional<Image> sketch(int width, int height, const std::vector<SketchBox>& boxes) override;

 private:
  [[nodiscard]] Images* images();

  Log& log_;
  const bool drawsLabels_;
  bool looked_ = false;
  std::unique_ptr<Images> images_;
};

}  // namespace tallowin
