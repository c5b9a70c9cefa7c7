#pragma once

#include <cstddef>
#include <expected>
#include <filesystem>
#include <string>
#include <string_view>

#include "platform/files.h"
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

/// Far beyond any file that this program writes for others, in bytes.
inline constexpr std::size_t largestForeignFile = std::size_t{16} << 20;

/// Why something that a user handed in was not taken: a sentence for the user, and what exactly is wrong, for those who
/// want to know ("it nests deeper than 200 levels").
struct ForeignFault {
  std::string sentence;
  std::string reason;
  bool isUnreadable = false;  ///< the file itself could not be read; else its content is not what it should be
  bool operator==(const ForeignFault&) const = default;
};

/// Reads JSON that somebody else may have written. On top of parseJSON() texts above largestForeignFile are refused,
/// and objects in which a key stands twice, as readers disagree on which one counts. The error says what is wrong.
[[nodiscard]] std::expected<PropertyList, std::string> parseForeignJSON(std::string_view bytes);

/// The content of a file, which is not read when it is larger than largestForeignFile: then it is a fault with
/// `notUnderstood` for a sentence. A file that cannot be read is a fault with a sentence of its own.
[[nodiscard]] std::expected<std::string, ForeignFault> readForeignFile(Files& files, const std::filesystem::path& path,
                                                                       const std::string& notUnderstood);

/// The same for JSON, which is a fault with the sentence `notUnderstood` when it cannot be understood.
[[nodiscard]] std::expected<PropertyList, ForeignFault> readForeignJSON(Files& files, const std::filesystem::path& path,
                                                                        const std::string& notUnderstood);

}  // namespace tallowin
