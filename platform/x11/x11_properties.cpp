#include "platform/x11/x11_properties.h"

#include <algorithm>
#include <cstring>

#include "platform/x11/x11_connection.h"

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

struct TypeLayer {
  X11Atom type;
  int layer;
};

constexpr int desktopLevel = -2147483623;  // kCGDesktopWindowLevel

constexpr TypeLayer typeLayers[] = {
    {X11Atom::netWmWindowTypeNormal, 0},
    {X11Atom::netWmWindowTypeDialog, 0},
    {X11Atom::netWmWindowTypeDesktop, desktopLevel},
    {X11Atom::netWmWindowTypeDock, 20},
    {X11Atom::netWmWindowTypeToolbar, 3},
    {X11Atom::netWmWindowTypeMenu, 3},
    {X11Atom::netWmWindowTypeUtility, 3},
    {X11Atom::netWmWindowTypeSplash, 3},
    {X11Atom::netWmWindowTypeDropdownMenu, 101},
    {X11Atom::netWmWindowTypePopupMenu, 101},
    {X11Atom::netWmWindowTypeCombo, 101},
    {X11Atom::netWmWindowTypeTooltip, 200},
    {X11Atom::netWmWindowTypeNotification, 25},
    {X11Atom::netWmWindowTypeDnd, 500},
};

/// Coordinates have 16 bits.
constexpr std::uint32_t widestExtent = 0x7FFF;

std::string latin1ToUtf8(std::string_view bytes) {
  std::string text;
  for (const char c : bytes) {
    const auto byte = static_cast<unsigned char>(c);
    if (byte < 0x80) {
      text += c;
    } else {
      text += static_cast<char>(0xC0 | (byte >> 6));
      text += static_cast<char>(0x80 | (byte & 0x3F));
    }
  }
  return text;
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

std::vector<std::uint32_t> parseWords(const X11Property& property) {
  if (property.format != 32 || property.bytes.size() < sizeof(std::uint32_t)) {
    return {};
  }
  std::vector<std::uint32_t> words(property.bytes.size() / sizeof(std::uint32_t));
  std::memcpy(words.data(), property.bytes.data(), words.size() * sizeof(std::uint32_t));
  return words;
}

std::optional<FrameExtents> parseFrameExtents(const X11Property& property) {
  const auto words = parseWords(property);
  if (words.size() < 4 || std::ranges::any_of(words, [](std::uint32_t width) { return width > widestExtent; })) {
    return std::nullopt;
  }
  return FrameExtents{.left = words[0], .right = words[1], .top = words[2], .bottom = words[3]};
}

std::pair<std::string, std::string> parseWMClass(const X11Property& property) {
  const std::string_view bytes = property.format == 8 ? std::string_view(property.bytes) : std::string_view();
  const auto end = std::min(bytes.find('\0'), bytes.size());
  const auto rest = bytes.substr(std::min(end + 1, bytes.size()));
  return {latin1ToUtf8(bytes.substr(0, end)), latin1ToUtf8(rest.substr(0, rest.find('\0')))};
}

std::string parseText(const X11Property& property, bool utf8) {
  std::string_view bytes = property.format == 8 ? std::string_view(property.bytes) : std::string_view();
  bytes = bytes.substr(0, bytes.find('\0'));
  return utf8 ? validUtf8(bytes) : latin1ToUtf8(bytes);
}

double parseOpacity(const X11Property& property) {
  const auto opacity = parseCardinal(property);
  return opacity ? static_cast<double>(*opacity) / 0xFFFFFFFF : 1;
}

int windowLayer(const std::vector<std::uint32_t>& types, const X11Connection& connection) {
  for (const auto type : types) {
    for (const auto& [atom, layer] : typeLayers) {
      if (type == connection.atom(atom)) {
        return layer;
      }
    }
  }
  return 0;
}

CGRect withExtents(const CGRect& client, const FrameExtents& extents) {
  return {{client.origin.x - extents.left, client.origin.y - extents.top},
          {client.size.width + extents.left + extents.right, client.size.height + extents.top + extents.bottom}};
}

CGSize clientSize(CGSize frame, const FrameExtents& extents) {
  return {std::max(frame.width - extents.left - extents.right, 1.0),
          std::max(frame.height - extents.top - extents.bottom, 1.0)};
}

}  // namespace tallowin
