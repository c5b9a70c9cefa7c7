#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <xcb/randr.h>

#include "base/broadcast_notification_center.h"
#include "platform/displays.h"
#include "platform/images.h"
#include "platform/main_queue.h"
#include "platform/x11/x11_connection.h"
#include "platform/x11/x11_desktop_reader.h"

namespace tallowin {

/// What tells a monitor from every other one: its maker, product and serial number, and the serial text where it has
/// one, such as "DEL-40F3-0001E240-7MT0167B2YNL". Nothing when the bytes do not begin with a well-formed base block
/// (VESA E-EDID, 128 bytes with a checksum).
[[nodiscard]] std::optional<std::string> monitorIdentity(std::string_view edid);

/// EWMH has one set of desktops for all monitors, so all monitors together are one display, number 1, which is as large
/// as the root window. Its name and what identifies the set come from the monitors that RandR knows. Changed monitors
/// are posted as NSApplicationDidChangeScreenParametersNotification, once for each burst. Main thread only.
class X11Displays : public Displays {
 public:
  static constexpr DisplayID mainDisplay = 1;

  /// `notifications` are the application's.
  X11Displays(X11Connection& connection, X11DesktopReader& desktops, MainQueue& queue,
              BroadcastNotificationCenter& notifications);

  DisplayID CGMainDisplayID() override;
  CGRect CGDisplayBounds(DisplayID display) override;
  DisplayID CGDisplayGetDisplayIDFromUUID(std::string_view uuid) override;
  /// True when one of the monitors is connected as laptop panels are.
  bool CGDisplayIsBuiltin(DisplayID display) override;
  std::vector<Screen> screens() override;
  /// One for each monitor: what its EDID says (monitorIdentity), else the name of its connector.
  std::vector<std::string> displaySetIdentifiers() override;
  /// Empty without RandR 1.5.
  std::vector<Monitor> monitors() override;

  /// Takes an event of the server.
  void handle(const xcb_generic_event_t& event);

 private:
  struct Described {
    Monitor monitor;
    std::string edid;  ///< of its first output; empty when it has none
  };
  std::vector<Described> describedMonitors();

  X11Connection& connection_;
  X11DesktopReader& desktops_;
  MainQueue& queue_;
  BroadcastNotificationCenter& notifications_;
  const std::optional<int> randrEvent_;  ///< the number of RandR's first event, nothing without RandR
  WorkItem telling_;
};

/// How a TrueColor server lays out the pixels of a ZPixmap image (X Window System Protocol, image formats).
struct PixelFormat {
  int bitsPerPixel = 32;  ///< 8, 16, 24 or 32
  int scanlinePad = 32;   ///< each row is filled up to a multiple of this many bits
  bool leastSignificantByteFirst = true;
  std::uint32_t redMask = 0xFF0000;
  std::uint32_t greenMask = 0xFF00;
  std::uint32_t blueMask = 0xFF;
};

/// The bytes of one row, its filling included; 0 for a format that cannot be read.
[[nodiscard]] std::size_t rowLength(const PixelFormat& format, int width);

/// Appends rows of `image.width` pixels to an image. False, with the image as it was, when the bytes are not exactly
/// `rows` rows of the format or a mask is empty.
[[nodiscard]] bool appendRows(Image& image, std::string_view bytes, int rows, const PixelFormat& format);

/// Pictures of the whole root window, as display 1. X11 asks for no permission. Nothing on servers whose root window
/// has a palette instead of true colours.
class X11ScreenCapture : public ScreenCapture {
 public:
  explicit X11ScreenCapture(X11Connection& connection) : connection_(connection) {}

  bool CGPreflightScreenCaptureAccess() override { return connection_.alive(); }
  std::optional<Image> captureDisplay(DisplayID display) override;

 private:
  [[nodiscard]] std::optional<PixelFormat> pixelFormat() const;
  bool captureRows(Image& image, int top, int rows, const PixelFormat& format);

  X11Connection& connection_;
};

}  // namespace tallowin
