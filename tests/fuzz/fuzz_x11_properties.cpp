// Any client may put any bytes into a property that we read, and any monitor into its EDID.

#include <algorithm>
#include <numeric>

#include "base/unicode.h"
#include "platform/x11/x11_desktop_names.h"
#include "platform/x11/x11_desktop_reader.h"
#include "platform/x11/x11_displays.h"
#include "platform/x11/x11_properties.h"
#include "tests/fuzz/fuzzing.h"

using namespace tallowin;

namespace {

/// The input, taken apart from the front: properties are a byte that chooses the format, two of length, and the bytes.
class Input {
 public:
  explicit Input(std::string_view bytes) : rest_(bytes) {}

  std::string take(std::size_t length) {
    const auto taken = rest_.substr(0, length);
    rest_.remove_prefix(taken.size());
    return std::string(taken);
  }
  std::size_t number(std::size_t bytes) {
    const auto taken = take(bytes);
    return std::accumulate(taken.begin(), taken.end(), std::size_t{0},
                           [](std::size_t sum, char byte) { return sum << 8 | static_cast<unsigned char>(byte); });
  }
  X11Property property() {
    constexpr int formats[] = {0, 8, 16, 32};
    const int format = formats[number(1) % 4];
    return {format, take(number(2))};
  }
  [[nodiscard]] bool isEmpty() const { return rest_.empty(); }

 private:
  std::string_view rest_;
};

X11Property texts(const std::string& bytes) {
  return {bytes.empty() ? 0 : 8, bytes};
}

void readDesktops(Input& input) {
  X11DesktopProperties properties{input.property(), input.property(), input.property(),
                                  input.property(), input.property(), 0,
                                  input.property(), input.property()};
  properties.checkWindow = parseCardinal(properties.supportingWmCheck).value_or(0);
  const auto state = readX11DesktopState(properties);
  require(!state.current || *state.current < state.spaces.size(), "the current desktop is one of them");

  std::map<ManagedSpaceID, std::string> names;
  for (std::size_t index = 0; index < std::min<std::size_t>(state.spaces.size(), 4); ++index) {
    names.emplace(state.spaces[index], input.take(input.number(1) % 16));
  }
  const auto plan = planDesktopNames(properties, state, names);
  properties.desktopNames = texts(encodeTexts(plan.wanted));
  properties.desktopNamesRecord =
      texts(plan.record == DesktopNamesRecord() ? "" : encodeDesktopNamesRecord(plan.record));
  const auto again = planDesktopNames(properties, readX11DesktopState(properties), names);
  require(!again.changesAnything() && again.spaces == plan.spaces, "what is written once is not written again");
}

void readWindow(const X11Property& property) {
  static_cast<void>(parseWMClass(property));
  static_cast<void>(parseOpacity(property));
  static_cast<void>(parseFrameExtents(property));
  require(isValidUTF8(parseText(property, true)) && isValidUTF8(parseText(property, false)), "a title is text");
}

void readMonitor(std::string edid) {
  constexpr std::size_t block = 128;
  if (edid.size() >= block) {
    const auto sum = std::accumulate(edid.begin(), edid.begin() + block - 1, 0U, std::plus<unsigned char>());
    edid[block - 1] = static_cast<char>(256 - sum % 256);
  }
  static_cast<void>(monitorIdentity(edid));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Input input(inputText(data, size));
  if (input.number(1) == 'm') {
    readMonitor(input.take(size));
    return 0;
  }
  readDesktops(input);
  while (!input.isEmpty()) {
    readWindow(input.property());
  }
  return 0;
}
