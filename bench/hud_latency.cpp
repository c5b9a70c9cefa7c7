// How long the pop-up takes to be seen: from the moment that somebody asks the window manager for another desktop, or
// presses a key, to that of a pixel of the screen having another colour.
//
// hud_latency RUNS X Y: a pixel, from the top left corner, that the pop-up covers and nothing else; it must go by
// itself

#include <chrono>
#include <cstdlib>
#include <iostream>
#include <optional>
#include <thread>
#include <xcb/xcb.h>

#include "bench/desktop_witness.h"
#include "bench/side_by_side.h"
#include "bench/stopwatch.h"

namespace {

using namespace tallowin::bench;
using namespace std::chrono_literals;

/// One pixel of the screen.
class Pixel {
 public:
  Pixel(std::int16_t x, std::int16_t y) : connection_(xcb_connect(nullptr, nullptr)), x_(x), y_(y) {
    root_ = xcb_setup_roots_iterator(xcb_get_setup(connection_)).data->root;
  }
  ~Pixel() { xcb_disconnect(connection_); }
  Pixel(const Pixel&) = delete;
  Pixel& operator=(const Pixel&) = delete;

  [[nodiscard]] std::uint32_t color() const {
    auto* const image = xcb_get_image_reply(
        connection_, xcb_get_image(connection_, XCB_IMAGE_FORMAT_Z_PIXMAP, root_, x_, y_, 1, 1, ~0U), nullptr);
    const std::uint32_t color = image != nullptr ? *reinterpret_cast<std::uint32_t*>(xcb_get_image_data(image)) : 0;
    std::free(image);
    return color;
  }

  /// Milliseconds until it is of the colour, or is not; nothing after so long.
  [[nodiscard]] std::optional<double> until(std::uint32_t wanted, bool isWanted, double longest) const {
    const Stopwatch stopwatch;
    while ((color() == wanted) != isWanted) {
      if (stopwatch.now() > longest) {
        return std::nullopt;
      }
    }
    return stopwatch.now();
  }

 private:
  xcb_connection_t* connection_;
  xcb_window_t root_ = XCB_WINDOW_NONE;
  std::int16_t x_;
  std::int16_t y_;
};

}  // namespace

int main(int argc, char** argv) {
  if (argc != 4) {
    std::cerr << "usage: hud_latency RUNS X Y\n";
    return 64;
  }
  constexpr double longest = 10000;
  const Pixel pixel(static_cast<std::int16_t>(std::atoi(argv[2])), static_cast<std::int16_t>(std::atoi(argv[3])));
  const DesktopWitness witness;
  const auto empty = pixel.color();
  Samples samples;
  for (int run = 0; run < std::atoi(argv[1]); ++run) {
    witness.ask(witness.other());
    const auto shown = pixel.until(empty, false, longest);
    if (!shown || !pixel.until(empty, true, longest)) {
      std::cerr << "hud_latency: the pop-up did not come and go\n";
      return 1;
    }
    samples.add(0, *shown);
    std::this_thread::sleep_for(100ms);
  }
  samples.print();
  return 0;
}
