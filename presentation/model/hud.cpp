#include "presentation/model/hud.h"

#include <algorithm>
#include <array>

#include "base/unicode.h"

namespace tallowin {

CGSize hudExtent(HUDSize size, double lineHeight) {
  constexpr auto inLines = std::to_array<CGSize>({{15, 4}, {22.5, 6}, {32.5, 8.75}});
  const auto& extent = inLines.at(static_cast<std::size_t>(size));
  return {extent.width * lineHeight, extent.height * lineHeight};
}

CGRect hudFrame(const CGRect& workArea, CGSize extent, HUDPosition position) {
  constexpr double distance = 1.0 / 8;
  const CGSize size{std::min(extent.width, workArea.size.width), std::min(extent.height, workArea.size.height)};
  const double room = workArea.size.height - size.height;
  const double margin = std::min(workArea.size.height * distance, room);
  const double fromTop = position == HUDPosition::top      ? margin
                         : position == HUDPosition::center ? room / 2
                                                           : room - margin;
  return {{workArea.origin.x + (workArea.size.width - size.width) / 2, workArea.origin.y + fromTop}, size};
}

std::chrono::milliseconds readingTime(const Toast& toast) {
  using namespace std::chrono_literals;
  constexpr std::size_t freeCharacters = 24;
  std::size_t characters = 0;
  for (std::string_view rest = toast.text; !rest.empty(); rest.remove_prefix(firstCharacters(rest, 1).size())) {
    ++characters;
  }
  const auto more = characters > freeCharacters ? characters - freeCharacters : 0;
  return std::min<std::chrono::milliseconds>(1200ms + more * 50ms, 5s);
}

}  // namespace tallowin
