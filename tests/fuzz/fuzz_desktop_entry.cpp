// Any bytes may stand in the desktop entry of an application.

#include "platform/xdg/desktop_entry.h"
#include "tests/fuzz/fuzzing.h"

using namespace tallowin;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (const auto entry = parseDesktopEntry(inputText(data, size), {"de_DE", "de"})) {
    static_cast<void>(expandExec(*entry, "/usr/share/applications/x.desktop", {"https://a.example", "b"}));
  }
  return 0;
}
