#include "platform/x11/x11_screen_capture.h"

#include <algorithm>
#include <bit>
#include <limits>

#include "platform/x11/x11_displays.h"

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

/// Large pictures come in stripes of about this many bytes, so that neither side holds one as a single message.
constexpr std::size_t stripeLength = std::size_t{4} * 1024 * 1024;

const xcb_visualtype_t* findVisual(const xcb_screen_t& screen) {
  for (auto depths = xcb_screen_allowed_depths_iterator(&screen); depths.rem > 0; xcb_depth_next(&depths)) {
    for (auto visuals = xcb_depth_visuals_iterator(depths.data); visuals.rem > 0; xcb_visualtype_next(&visuals)) {
      if (visuals.data->visual_id == screen.root_visual) {
        return visuals.data;
      }
    }
  }
  return nullptr;
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

std::optional<PixelFormat> X11ScreenCapture::pixelFormat() const {
  const auto* setup = xcb_get_setup(connection_.raw());
  const auto& screen = connection_.screen();
  const auto* visual = findVisual(screen);
  if (visual == nullptr || visual->_class != XCB_VISUAL_CLASS_TRUE_COLOR) {
    return std::nullopt;
  }
  for (auto formats = xcb_setup_pixmap_formats_iterator(setup); formats.rem > 0; xcb_format_next(&formats)) {
    if (formats.data->depth == screen.root_depth) {
      return PixelFormat{.bitsPerPixel = formats.data->bits_per_pixel,
                         .scanlinePad = formats.data->scanline_pad,
                         .leastSignificantByteFirst = setup->image_byte_order == XCB_IMAGE_ORDER_LSB_FIRST,
                         .redMask = visual->red_mask,
                         .greenMask = visual->green_mask,
                         .blueMask = visual->blue_mask};
    }
  }
  return std::nullopt;
}

std::optional<Image> X11ScreenCapture::captureDisplay(DisplayID display) {
  const auto format = connection_.alive() ? pixelFormat() : std::nullopt;
  if (display != X11Displays::mainDisplay || !format) {
    return std::nullopt;
  }
  const auto size = connection_.reply(xcb_get_geometry_reply, xcb_get_geometry(connection_.raw(), connection_.root()));
  if (!size) {
    return std::nullopt;
  }
  Image image{.width = size->width, .height = 0, .pixels = {}};
  const auto row = std::max<std::size_t>(rowLength(*format, image.width), 1);
  const int rowsAtOnce = static_cast<int>(std::clamp<std::size_t>(stripeLength / row, 1, size->height));
  image.pixels.reserve(static_cast<std::size_t>(size->width) * size->height);
  while (image.height < size->height) {
    if (!captureRows(image, image.height, std::min(rowsAtOnce, size->height - image.height), *format)) {
      return std::nullopt;
    }
  }
  return image;
}

bool X11ScreenCapture::captureRows(Image& image, int top, int rows, const PixelFormat& format) {
  if (top > std::numeric_limits<std::int16_t>::max()) {
    return false;
  }
  const auto answer = connection_.reply(
      xcb_get_image_reply, xcb_get_image(connection_.raw(), XCB_IMAGE_FORMAT_Z_PIXMAP, connection_.root(), 0,
                                         static_cast<std::int16_t>(top), static_cast<std::uint16_t>(image.width),
                                         static_cast<std::uint16_t>(rows), std::numeric_limits<std::uint32_t>::max()));
  if (!answer) {
    return false;
  }
  const std::string_view bytes(reinterpret_cast<const char*>(xcb_get_image_data(answer.get())),
                               static_cast<std::size_t>(xcb_get_image_data_length(answer.get())));
  // The protocol fills the data up to a multiple of four bytes.
  return appendRows(image, bytes.substr(0, rowLength(format, image.width) * static_cast<std::size_t>(rows)), rows,
                    format);
}

}  // namespace tallowin
