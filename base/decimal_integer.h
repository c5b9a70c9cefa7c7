#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace tallowin {

/// The whole text as a decimal integer: one sign at most, then ASCII digits and nothing else. Nothing for other texts
/// and beyond 64 bits.
[[nodiscard]] std::optional<std::int64_t> decimalInteger(std::string_view text);

}  // namespace tallowin
