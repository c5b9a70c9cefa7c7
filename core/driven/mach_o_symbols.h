#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

#include "platform/private_functions.h"

namespace tallowin {

/// Whether the image begins with the header of a 64-bit Mach-O file (mach-o/loader.h, MH_MAGIC_64).
[[nodiscard]] bool isMachO64(std::span<const std::byte> image);

/// The address in this process of a symbol, exported or not, by the image's own symbol table. `image.bytes` must cover
/// what is looked at: whatever lies outside, overflows or contradicts the header counts as not found, so any bytes may
/// be given.
[[nodiscard]] std::optional<std::uint64_t> addressOfSymbol(const LoadedImage& image, std::string_view name);

}  // namespace tallowin
