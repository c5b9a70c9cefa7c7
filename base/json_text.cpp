#include "base/json_text.h"

#include <optional>
#include <set>
#include <tuple>
#include <vector>

namespace tallowin {

namespace {

/// How deep the text nests. Brackets inside texts do not count.
int nesting(std::string_view text) {
  int depth = 0;
  int deepest = 0;
  bool quoted = false;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const char c = text[i];
    if (quoted) {
      i += c == '\\' ? 1 : 0;
      quoted = c != '"';
    } else if (c == '"') {
      quoted = true;
    } else if (c == '[' || c == '{') {
      deepest = std::max(deepest, ++depth);
    } else if (c == ']' || c == '}') {
      --depth;
    }
  }
  return deepest;
}

/// The library's message without its own error number: "parse error at line 3, column 7: …".
std::string withoutNumber(std::string message) {
  const auto end = message.find("] ");
  return end == std::string::npos ? message : message.substr(end + 2);
}

/// The text with DEL and the control characters from U+0080 to U+009F escaped, which JSON lets stand: terminals obey
/// them.
std::string printableJSON(std::string text) {
  constexpr char del = 0x7F;
  constexpr char lead = static_cast<char>(0xC2);  // of the two bytes of U+0080 to U+00BF, the second is its number
  constexpr unsigned char firstVisible = 0xA0;
  const auto isControl = [&](std::size_t i) {
    return text[i] == del ||
           (text[i] == lead && i + 1 < text.size() && static_cast<unsigned char>(text[i + 1]) < firstVisible);
  };
  constexpr std::string_view digits = "0123456789abcdef";
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (isControl(i)) {
      const std::size_t length = text[i] == lead ? 2 : 1;
      const auto code = static_cast<unsigned char>(text[i + length - 1]);
      text.replace(i, length, {'\\', 'u', '0', '0', digits[code >> 4U], digits[code & 0xFU]});
    }
  }
  return text;
}

/// A key that stands twice in one object of a well-formed text.
std::optional<std::string> repeatedKey(std::string_view text) {
  std::optional<std::string> repeated;
  std::vector<std::set<std::string>> keys;
  const auto look = [&](int /*depth*/, PropertyList::parse_event_t event, PropertyList& value) {
    if (event == PropertyList::parse_event_t::object_start) {
      keys.emplace_back();
    } else if (event == PropertyList::parse_event_t::object_end) {
      keys.pop_back();
    } else if (event == PropertyList::parse_event_t::key && !keys.back().insert(value.get<std::string>()).second) {
      repeated = value.get<std::string>();
    }
    return true;
  };
  std::ignore = PropertyList::parse(text, look, false);
  return repeated;
}

std::string tooLarge(std::uint64_t size) {
  return "it has " + std::to_string(size) + " bytes, and " + std::to_string(largestForeignFile) + " are the most";
}

}  // namespace

std::expected<PropertyList, std::string> parseJSON(std::string_view text) {
  if (nesting(text) > maximumJSONDepth) {
    return std::unexpected("it nests deeper than " + std::to_string(maximumJSONDepth) + " levels");
  }
  try {
    return PropertyList::parse(text);
  } catch (const PropertyList::exception& error) {
    return std::unexpected(withoutNumber(error.what()));
  }
}

std::string prettyJSON(const PropertyList& value) {
  return printableJSON(value.dump(2, ' ', false, PropertyList::error_handler_t::replace)) + "\n";
}

std::string compactJSON(const PropertyList& value) {
  return printableJSON(value.dump(-1, ' ', false, PropertyList::error_handler_t::replace));
}

std::expected<PropertyList, std::string> parseForeignJSON(std::string_view bytes) {
  if (bytes.size() > largestForeignFile) {
    return std::unexpected(tooLarge(bytes.size()));
  }
  auto json = parseJSON(bytes);
  if (json) {
    if (const auto key = repeatedKey(bytes)) {
      return std::unexpected("the key " + compactJSON(*key) + " stands twice in one object");
    }
  }
  return json;
}

std::expected<std::string, ForeignFault> readForeignFile(Files& files, const std::filesystem::path& path,
                                                         const std::string& notUnderstood) {
  if (const auto stamp = files.stamp(path); stamp && stamp->size > largestForeignFile) {
    return std::unexpected(ForeignFault{notUnderstood, tooLarge(stamp->size), false});
  }
  auto bytes = files.read(path);
  return bytes ? std::expected<std::string, ForeignFault>(*std::move(bytes))
               : std::unexpected(ForeignFault{"That file cannot be read.", bytes.error().description, true});
}

std::expected<PropertyList, ForeignFault> readForeignJSON(Files& files, const std::filesystem::path& path,
                                                          const std::string& notUnderstood) {
  const auto bytes = readForeignFile(files, path, notUnderstood);
  if (!bytes) {
    return std::unexpected(bytes.error());
  }
  auto json = parseForeignJSON(*bytes);
  return json ? std::expected<PropertyList, ForeignFault>(*std::move(json))
              : std::unexpected(ForeignFault{notUnderstood, json.error(), false});
}

}  // namespace tallowin
