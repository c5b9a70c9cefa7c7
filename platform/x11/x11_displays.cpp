#include "platform/x11/x11_displays.h"

#include <algorithm>
#include <array>
#include <bit>
#include <iterator>
#include <limits>
#include <numeric>

namespace tallowin {

namespace {

/// Docking a computer changes its outputs one after the other.
constexpr Duration screensBurst = std::chrono::milliseconds(50);

// The base block's layout, by byte offsets.
constexpr std::size_t blockLength = 128;
constexpr std::string_view header("\x00\xFF\xFF\xFF\xFF\xFF\xFF\x00", 8);
constexpr std::size_t makerOffset = 8;     // three letters of five bits, big-endian, A is 1
constexpr std::size_t productOffset = 10;  // 16 bits, little-endian
constexpr std::size_t serialOffset = 12;   // 32 bits, little-endian
constexpr std::size_t descriptorsOffset = 54;
constexpr std::size_t descriptorLength = 18;
constexpr std::string_view serialTextTag("\x00\x00\x00\xFF\x00", 5);

std::uint32_t byteAt(std::string_view bytes, std::size_t offset) {
  return static_cast<unsigned char>(bytes[offset]);
}

void appendHexadecimal(std::string& text, std::string_view littleEndian) {
  static constexpr auto digits = "0123456789ABCDEF";
  for (std::size_t i = littleEndian.size(); i > 0; --i) {
    text += digits[byteAt(littleEndian, i - 1) >> 4];
    text += digits[byteAt(littleEndian, i - 1) & 15];
  }
}

std::string maker(std::string_view edid) {
  const auto packed = byteAt(edid, makerOffset) << 8 | byteAt(edid, makerOffset + 1);
  std::string letters;
  for (const unsigned shift : {10U, 5U, 0U}) {
    letters += static_cast<char>('A' - 1 + (packed >> shift & 31));
  }
  return letters;
}

/// The printable characters of the serial descriptor up to its line feed; empty when there is none.
std::string serialText(std::string_view edid) {
  std::string text;
  for (auto offset = descriptorsOffset; offset + descriptorLength < blockLength; offset += descriptorLength) {
    const auto descriptor = edid.substr(offset, descriptorLength);
    if (descriptor.starts_with(serialTextTag)) {
      const auto line = descriptor.substr(serialTextTag.size());
      std::ranges::copy_if(line.substr(0, line.find('\n')), std::back_inserter(text),
                           [](char character) { return character > ' ' && character <= '~'; });
    }
  }
  return text;
}

constexpr std::array<std::string_view, 3> panelConnectors = {"eDP", "LVDS", "DSI"};
constexpr std::uint32_t longestEdid = 32 * 1024 / 4;  // 256 blocks of 128 bytes, in units of four bytes

bool isPanel(std::string_view name) {
  return std::ranges::any_of(panelConnectors, [&](std::string_view connector) { return name.starts_with(connector); });
}

std::string nameOf(X11Connection& connection, xcb_atom_t atom) {
  const auto answer = connection.reply(xcb_get_atom_name_reply, xcb_get_atom_name(connection.raw(), atom));
  return answer ? validUtf8({xcb_get_atom_name_name(answer.get()),
                             static_cast<std::size_t>(xcb_get_atom_name_name_length(answer.get()))})
                : std::string();
}

/// The EDID of a monitor's first output; empty when it has none.
std::string edidOf(X11Connection& connection, const xcb_randr_monitor_info_t& monitor) {
  if (xcb_randr_monitor_info_outputs_length(&monitor) == 0) {
    return {};
  }
  const auto answer = connection.reply(
      xcb_randr_get_output_property_reply,
      xcb_randr_get_output_property(connection.raw(), *xcb_randr_monitor_info_outputs(&monitor),
                                    connection.atom(X11Atom::edid), XCB_GET_PROPERTY_TYPE_ANY, 0, longestEdid, 0, 0));
  if (!answer || answer->format != 8) {
    return {};
  }
  return {reinterpret_cast<const char*>(xcb_randr_get_output_property_data(answer.get())),
          static_cast<std::size_t>(xcb_randr_get_output_property_data_length(answer.get()))};
}

/// What panels leave of the desktop that comes first (EWMH, _NET_WORKAREA); nothing when nobody says.
std::optional<CGRect> parseWorkArea(const X11Property& property) {
  const auto words = parseWords(property);
  return words.size() < 4 ? std::nullopt
                          : std::optional(CGRect{{static_cast<double>(words[0]), static_cast<double>(words[1])},
                                                 {static_cast<double>(words[2]), static_cast<double>(words[3])}});
}

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

std::optional<std::string> monitorIdentity(std::string_view edid) {
  const auto block = edid.substr(0, blockLength);
  const auto add = [](unsigned sum, char byte) { return sum + static_cast<unsigned char>(byte); };
  if (block.size() < blockLength || !block.starts_with(header) ||
      std::accumulate(block.begin(), block.end(), 0U, add) % 256 != 0) {
    return std::nullopt;
  }
  std::string identity = maker(block) + '-';
  appendHexadecimal(identity, block.substr(productOffset, 2));
  identity += '-';
  appendHexadecimal(identity, block.substr(serialOffset, 4));
  if (const auto text = serialText(block); !text.empty()) {
    identity += '-' + text;
  }
  return identity;
}

X11Displays::X11Displays(X11Connection& connection, X11DesktopReader& desktops, MainQueue& queue,
                         BroadcastNotificationCenter& notifications)
    : connection_(connection),
      desktops_(desktops),
      queue_(queue),
      notifications_(notifications),
      randrEvent_(connection.firstEvent(xcb_randr_id)) {
  if (randrEvent_) {
    // A server answers in the oldest version that it has not been told is understood. Its own version does not matter:
    // a request that it does not know fails.
    xcb_discard_reply(connection_.raw(), xcb_randr_query_version(connection_.raw(), 1, 5).sequence);
    xcb_randr_select_input(
        connection_.raw(), connection_.root(),
        XCB_RANDR_NOTIFY_MASK_SCREEN_CHANGE | XCB_RANDR_NOTIFY_MASK_CRTC_CHANGE | XCB_RANDR_NOTIFY_MASK_OUTPUT_CHANGE);
  }
}

void X11Displays::handle(const xcb_generic_event_t& event) {
  const int type = x11EventType(event);
  if (randrEvent_ &&
      (type == *randrEvent_ + XCB_RANDR_SCREEN_CHANGE_NOTIFY || type == *randrEvent_ + XCB_RANDR_NOTIFY)) {
    telling_ = queue_.after(screensBurst, [this] {
      notifications_.post({NotificationName::NSApplicationDidChangeScreenParametersNotification, std::nullopt});
    });
  }
}

DisplayID X11Displays::CGMainDisplayID() {
  return connection_.alive() ? mainDisplay : 0;
}

CGRect X11Displays::CGDisplayBounds(DisplayID display) {
  return display == mainDisplay ? CGRect{{0, 0}, desktops_.present().rootSize} : CGRect{};
}

DisplayID X11Displays::CGDisplayGetDisplayIDFromUUID(std::string_view /*uuid*/) {
  return 0;
}

bool X11Displays::CGDisplayIsBuiltin(DisplayID display) {
  return display == mainDisplay && std::ranges::any_of(monitors(), &Monitor::isBuiltIn);
}

std::vector<Screen> X11Displays::screens() {
  const auto bounds = CGDisplayBounds(mainDisplay);
  if (bounds == CGRect{}) {
    return {};
  }
  std::string name;
  for (const auto& monitor : monitors()) {
    name += (name.empty() ? "" : " + ") + monitor.name;
  }
  return {{mainDisplay, bounds, name.empty() ? "Screen" : name}};
}

std::vector<std::string> X11Displays::displaySetIdentifiers() {
  std::vector<std::string> identifiers;
  for (const auto& [monitor, edid] : describedMonitors()) {
    identifiers.push_back(monitorIdentity(edid).value_or(monitor.name));
  }
  return identifiers;
}

std::vector<Monitor> X11Displays::monitors() {
  std::vector<Monitor> found;
  std::ranges::transform(describedMonitors(), std::back_inserter(found), &Described::monitor);
  return found;
}

std::vector<X11Displays::Described> X11Displays::describedMonitors() {
  if (!randrEvent_) {
    return {};
  }
  const auto area = connection_.requestProperty(connection_.root(), X11Atom::netWorkarea, XCB_ATOM_CARDINAL);
  const auto answer =
      connection_.reply(xcb_randr_get_monitors_reply, xcb_randr_get_monitors(connection_.raw(), connection_.root(), 1));
  const auto workArea = parseWorkArea(connection_.takeProperty(area));
  if (!answer) {
    return {};
  }
  std::vector<Described> found;
  for (auto each = xcb_randr_get_monitors_monitors_iterator(answer.get()); each.rem > 0;
       xcb_randr_monitor_info_next(&each)) {
    const auto& monitor = *each.data;
    const CGRect bounds{{static_cast<double>(monitor.x), static_cast<double>(monitor.y)},
                        {static_cast<double>(monitor.width), static_cast<double>(monitor.height)}};
    const auto unobstructed = workArea ? intersection(bounds, *workArea) : CGRect();
    const auto name = nameOf(connection_, monitor.name);
    found.push_back(
        {{name, bounds, unobstructed == CGRect() ? bounds : unobstructed, isPanel(name), monitor.primary != 0},
         edidOf(connection_, monitor)});
  }
  std::ranges::stable_partition(found, [](const Described& each) { return each.monitor.isPrimary; });
  return found;
}

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
