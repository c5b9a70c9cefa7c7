#pragma once

#include "platform/images.h"

namespace tallowin {

/// Pictures by QImage. A sketch's labels need the fonts of a QGuiApplication; without one there is no sketch.
class QtImages : public Images {
 public:
  std::optional<Image> decode(std::string_view bytes) override;
  std::optional<Image> scaled(const Image& image, int width, int height) override;
  std::string encodePNG(const Image& image) override;
  std::string encodeJPEG(const Image& image, int quality) override;
  std::optional<Image> sketch(int width, int height, const std::vector<SketchBox>& boxes) override;
};

}  // namespace tallowin
