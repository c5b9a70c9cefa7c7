// Any bytes may stand in the desktop entry of an application.

#include <algorithm>

#include "platform/xdg/desktop_entry.h"
#include "tests/fuzz/fuzzing.h"

using namespace tallowin;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const auto entry = parseDesktopEntry(inputText(data, size), {"de_DE", "de"});
  if (!entry) {
    return 0;
  }
  const std::string opened = "https://a.example";
  const auto words = expandExec(*entry, "/usr/share/applications/x.desktop", {opened, "b"});
  const auto holdsIt = [&](const std::string& word) { return word.find(opened) != std::string::npos; };
  require(words.empty() || std::ranges::any_of(words, holdsIt), "what is to be opened is handed over");
  return 0;
}
