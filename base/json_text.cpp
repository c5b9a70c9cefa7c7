#include "base/json_text.h"

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
  return value.dump(2, ' ', false, PropertyList::error_handler_t::replace) + "\n";
}

std::string compactJSON(const PropertyList& value) {
  return value.dump(-1, ' ', false, PropertyList::error_handler_t::replace);
}

}  // namespace tallowin
