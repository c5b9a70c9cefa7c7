#pragma once

#include <cstddef>
#include <expected>
#include <filesystem>
#include <string>
#include <string_view>

#include "platform/files.h"
#include "platform/property_list.h"

namespace tallowin {

/// Far beyond any file that this program writes for others, in bytes.
inline constexpr std::size_t largestForeignFile = std::size_t{16} << 20;

/// Why something that a user handed in was not taken: a sentence for the user, and what exactly is wrong, for those who
/// want to know ("it nests deeper than 200 levels").
struct ForeignFault {
  std::string sentence;
  std::string reason;
  bool operator==(const ForeignFault&) const = default;
};

/// Reads JSON that somebody else may have written. On top of parseJSON() texts above largestForeignFile are refused,
/// and objects in which a key stands twice, as readers disagree on which one counts. The error says what is wrong.
[[nodiscard]] std::expected<PropertyList, std::string> parseForeignJSON(std::string_view bytes);

/// The same for a file, which is not read when it is too large. A file that cannot be read is a fault with its own
/// sentence; one that cannot be understood has `notUnderstood` for a sentence.
[[nodiscard]] std::expected<PropertyList, ForeignFault> readForeignJSON(Files& files, const std::filesystem::path& path,
                                                                        const std::string& notUnderstood);

}  // namespace tallowin
