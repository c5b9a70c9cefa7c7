#pragma once

#include <string>
#include <string_view>

namespace tallowin {

/// The name of the file that holds the layout of this name for the displays with this key: both with "--" between them,
/// every "/" replaced by "-". What is longer than 120 characters (Unicode scalar values; a byte that is no UTF-8 counts
/// as one) is cut after 60, and the FNV-1a hash of the whole stands in place of the rest.
[[nodiscard]] std::string layoutFileName(std::string_view name, std::string_view displaySetup);

/// What version 0.1.0 called that file: the hash was the standard library's, which another library computes otherwise.
[[nodiscard]] std::string earlierLayoutFileName(std::string_view name, std::string_view displaySetup);

}  // namespace tallowin
