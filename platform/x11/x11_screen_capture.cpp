#include "platform/x11/x11_screen_capture.h"

#include <algorithm>
#include <limits>

#include "platform/x11/x11_displays.h"

namespace tallowin {

namespace {

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
