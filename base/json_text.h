#pragma once

#include <expected>
#include <string>
#include <string_view>

#include "platform/property_list.h"

namespace tallowin {

/// How deep lists and dictionaries of a JSON text may nest; far beyond any record of this program.
inline constexpr int maximumJSONDepth = 200;

/// Reads one JSON text (RFC 8259) in valid UTF-8. The error says what is wrong and where (line and column).
[[nodiscard]] std::expected<PropertyList, std::string> parseJSON(std::string_view text);

/// The text of a record file: two blanks of indentation, keys sorted, a final line feed. Invalid UTF-8 becomes U+FFFD.
[[nodiscard]] std::string prettyJSON(const PropertyList& value);

/// The same value on one line.
[[nodiscard]] std::string compactJSON(const PropertyList& value);

}  // namespace tallowin
