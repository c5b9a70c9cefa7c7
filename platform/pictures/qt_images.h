#pragma once

#include <memory>

#include "platform/images.h"

class QGuiApplication;

namespace tallowin {

/// Pictures by QImage. Labels of sketches, which not every machine draws alike, are drawn on demand; the first sketch
/// makes a QGuiApplication for their fonts, on no screen.
class QtImages : public Images {
 public:
  explicit QtImages(bool drawsLabels);
  ~QtImages() override;
  std::optional<Image> decode(std::string_view bytes) override;
  std::optional<Image> scaled(const Image& image, int width, int height) override;
  std::string encodePNG(const Image& image) override;
  std::string encodeJPEG(const Image& image, int quality) override;
  std::optional<Image> sketch(int width, int height, const std::vector<SketchBox>& boxes) override;

 private:
  const bool drawsLabels_;
  std::unique_ptr<QGuiApplication> application_;
};

}  // namespace tallowin
