// Any property list may be given as the window server's list of Spaces.

#include "base/json_text.h"
#include "core/driven/driven_desktop.h"
#include "core/space_provider.h"
#include "tests/fuzz/fuzzing.h"

using namespace tallowin;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const auto list = parseJSON(inputText(data, size));
  const auto displays = list ? readDisplays(*list, "Main") : std::nullopt;
  if (displays && !displays->empty()) {
    const SpaceSnapshot snapshot{SpaceProvider::displays({*displays}), {}};
    require(snapshot.menuBarDisplay()->isMenuBarDisplay, "one display carries the menu bar");
  }
  return 0;
}
