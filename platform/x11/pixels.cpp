#include "platform/x11/pixels.h"

#include <bit>

namespace tallowin {

namespace {

/// One colour of a pixel, whatever the width of its field, as 0 to 255.
std::uint32_t channel(std::uint32_t pixel, std::uint32_t mask) {
  const std::uint64_t value = (pixel & mask) >> std::countr_zero(mask);
  const std::uint64_t highest = mask >> std::countr_zero(mask);
  return static_cast<std::uint32_t>((value * 255 + highest / 2) / highest);
}

std::uint32_t pixelAt(std::string_view bytes, std::size_t offset, const PixelFormat& format) {
  const auto size = static_cast<std::size_t>(format.bitsPerPixel / 8);
  std::uint32_t pixel = 0;
  for (std::size_t i = 0; i < size; ++i) {
    const auto at = format.leastSignificantByteFirst ? size - 1 - i : i;
    pixel = pixel << 8 | static_cast<unsigned char>(bytes[offset + at]);
  }
  return pixel;
}

}  // namespace

std::size_t rowLength(const PixelFormat& format, int width) {
  const int bits = format.bitsPerPixel;
  const int pad = format.scanlinePad;
  if ((bits != 8 && bits != 16 && bits != 24 && bits != 32) || (pad != 8 && pad != 16 && pad != 32) || width <= 0) {
    return 0;
  }
  const auto wanted = static_cast<std::size_t>(width) * static_cast<std::size_t>(bits);
  const auto unit = static_cast<std::size_t>(pad);
  return (wanted + unit - 1) / unit * unit / 8;
}

bool appendRows(Image& image, std::string_view bytes, int rows, const PixelFormat& format) {
  const auto length = rowLength(format, image.width);
  if (length == 0 || rows <= 0 || bytes.size() != length * static_cast<std::size_t>(rows) || format.redMask == 0 ||
      format.greenMask == 0 || format.blueMask == 0) {
    return false;
  }
  const auto step = static_cast<std::size_t>(format.bitsPerPixel / 8);
  for (std::size_t row = 0; row < bytes.size(); row += length) {
    for (std::size_t column = 0; column < static_cast<std::size_t>(image.width); ++column) {
      const auto pixel = pixelAt(bytes, row + column * step, format);
      image.pixels.push_back(0xFF000000 | channel(pixel, format.redMask) << 16 | channel(pixel, format.greenMask) << 8 |
                             channel(pixel, format.blueMask));
    }
  }
  image.height += rows;
  return true;
}

}  // namespace tallowin
