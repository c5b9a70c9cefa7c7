// Any property list may be given as the window server's list of Spaces.

#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "base/json_text.h"
#include "core/space_provider.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const auto list = tallowin::parseJSON({reinterpret_cast<const char*>(data), size});
  const auto displays = list ? tallowin::SpaceProvider::readDisplays(*list, "Main") : std::nullopt;
  if (!displays || displays->empty()) {
    return 0;
  }
  // Whatever was read, one display carries the menu bar and the desktops are numbered from 1 without a gap.
  const tallowin::SpaceSnapshot snapshot{*displays, {}};
  std::int64_t number = 0;
  for (const auto& space : snapshot.allSpaces()) {
    if (space.isFullscreen ? space.desktopNumber.has_value() : space.desktopNumber != ++number) {
      std::abort();
    }
  }
  if (!snapshot.menuBarDisplay()->isMenuBarDisplay) {
    std::abort();
  }
  return 0;
}
