#pragma once

#include <cstdint>
#include <functional>
#include <string>

namespace tallowin {

/// Where random bits come from: every call answers 64 new ones. A simulation hands in a generator with a fixed start.
using RandomBits = std::function<std::uint64_t()>;

/// A random UUID (RFC 9562, version 4) as text, in upper case: "7C0E2B4A-93D1-4F6E-8A05-1B2C3D4E5F60".
[[nodiscard]] std::string randomUUID(const RandomBits& random);

}  // namespace tallowin
