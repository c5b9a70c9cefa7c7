#pragma once

#include <span>
#include <string_view>

namespace tallowin {

/// Under which names a browser is known on Linux: ids of desktop entries and programs, to be tried in this order. Empty
/// for everything but the browsers whose bundle identifiers are widely known.
[[nodiscard]] std::span<const std::string_view> linuxNamesOf(std::string_view bundleIdentifier);

}  // namespace tallowin
