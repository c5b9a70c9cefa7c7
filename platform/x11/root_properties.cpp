#include "platform/x11/root_properties.h"

#include <algorithm>
#include <cstring>

namespace tallowin {

namespace {

/// What may follow one range of leading bytes (The Unicode Standard, table 3-7).
struct Utf8Form {
  unsigned char firstLow;
  unsigned char firstHigh;
  std::size_t length;
  unsigned char secondLow;
  unsigned char secondHigh;
};

constexpr Utf8Form utf8Forms[] = {
    {0x00, 0x7F, 1, 0, 0},       {0xC2, 0xDF, 2, 0x80, 0xBF}, {0xE0, 0xE0, 3, 0xA0, 0xBF},
    {0xE1, 0xEC, 3, 0x80, 0xBF}, {0xED, 0xED, 3, 0x80, 0x9F}, {0xEE, 0xEF, 3, 0x80, 0xBF},
    {0xF0, 0xF0, 4, 0x90, 0xBF}, {0xF1, 0xF3, 4, 0x80, 0xBF}, {0xF4, 0xF4, 4, 0x80, 0x8F},
};

bool within(char byte, unsigned char low, unsigned char high) {
  const auto value = static_cast<unsigned char>(byte);
  return value >= low && value <= high;
}

/// The length of the well-formed character at the front, 0 when there is none.
std::size_t characterLength(std::string_view bytes) {
  const auto form = std::ranges::find_if(
      utf8Forms, [&](const Utf8Form& candidate) { return within(bytes[0], candidate.firstLow, candidate.firstHigh); });
  if (form == std::end(utf8Forms) || bytes.size() < form->length) {
    return 0;
  }
  if (form->length > 1 && !within(bytes[1], form->secondLow, form->secondHigh)) {
    return 0;
  }
  const auto rest = form->length > 2 ? bytes.substr(2, form->length - 2) : std::string_view{};
  return std::ranges::all_of(rest, [](char byte) { return within(byte, 0x80, 0xBF); }) ? form->length : 0;
}

}  // namespace

std::optional<std::uint32_t> parseCardinal(const X11Property& property) {
  std::uint32_t value = 0;
  if (property.format != 32 || property.bytes.size() < sizeof value) {
    return std::nullopt;
  }
  std::memcpy(&value, property.bytes.data(), sizeof value);
  return value;
}

std::optional<std::size_t> parseDesktopCount(const X11Property& property) {
  const auto count = parseCardinal(property);
  return count && *count >= 1 && *count <= maximumDesktopCount ? std::optional<std::size_t>(*count) : std::nullopt;
}

std::vector<std::string> parseTexts(const X11Property& property, std::size_t most) {
  std::vector<std::string> texts;
  std::string_view rest = property.format == 8 ? std::string_view(property.bytes) : std::string_view();
  while (!rest.empty() && texts.size() < most) {
    const auto end = std::min(rest.find('\0'), rest.size());
    texts.push_back(validUtf8(rest.substr(0, end)));
    rest.remove_prefix(std::min(end + 1, rest.size()));
  }
  return texts;
}

std::vector<std::string> parseDesktopNames(const X11Property& property) {
  return parseTexts(property, maximumDesktopCount);
}

std::string validUtf8(std::string_view bytes) {
  std::string text;
  text.reserve(bytes.size());
  while (!bytes.empty()) {
    const auto length = characterLength(bytes);
    if (length == 0) {
      text += "\xEF\xBF\xBD";
    } else {
      text += bytes.substr(0, length);
    }
    bytes.remove_prefix(std::max<std::size_t>(length, 1));
  }
  return text;
}

}  // namespace tallowin
