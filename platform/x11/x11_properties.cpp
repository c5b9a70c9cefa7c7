#include "platform/x11/x11_properties.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstring>
#include <filesystem>
#include <unistd.h>

#include "base/unicode.h"
#include "platform/x11/x11_connection.h"

namespace tallowin {

namespace {

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
  while (!bytes.empty()) {
    const auto character = firstCharacters(bytes, 1);
    text += isValidUTF8(character) ? character : "\xEF\xBF\xBD";
    bytes.remove_prefix(character.size());
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

std::vector<std::string> localMachineNames() {
  std::vector<std::string> names = {"localhost"};
  std::array<char, 256> buffer{};
  if (gethostname(buffer.data(), buffer.size() - 1) == 0) {
    const std::string whole = buffer.data();
    names.push_back(whole);
    names.push_back(whole.substr(0, whole.find('.')));
  }
  return names;
}

std::optional<ProcessID> processOf(const ProcessEvidence& evidence, const std::vector<std::string>& localNames) {
  const auto isPid = [](std::optional<std::uint32_t> pid) { return pid && *pid > 0 && *pid < firstStandInPid; };
  const auto isLocal = [&](const std::string& name) { return std::ranges::find(localNames, name) != localNames.end(); };
  const bool local = isLocal(evidence.machine) || isLocal(evidence.machine.substr(0, evidence.machine.find('.')));
  if (!local && !evidence.machine.empty()) {
    return std::nullopt;
  }
  if (isPid(evidence.server)) {
    return static_cast<ProcessID>(*evidence.server);
  }
  return local && isPid(evidence.named) ? std::optional(static_cast<ProcessID>(*evidence.named)) : std::nullopt;
}

ProcessID standInPid(std::uint32_t window, std::uint32_t resourceMask) {
  return firstStandInPid + static_cast<ProcessID>((window & ~resourceMask) >> std::popcount(resourceMask));
}

std::string programName(ProcessID pid) {
  if (pid <= 0 || pid >= firstStandInPid) {
    return {};
  }
  std::error_code error;
  auto name = std::filesystem::read_symlink("/proc/" + std::to_string(pid) + "/exe", error).filename().string();
  // What the kernel adds when the program's file has been replaced since, as by an update.
  constexpr std::string_view deleted = " (deleted)";
  return name.ends_with(deleted) ? name.substr(0, name.size() - deleted.size()) : name;
}

}  // namespace tallowin
