#pragma once

#include <cstdint>
#include <string_view>

namespace tallowin {

/// 64-bit FNV-1a (http://www.isthe.com/chongo/tech/comp/fnv/): the same for the same bytes, now and ever.
constexpr std::uint64_t fnv1a(std::string_view bytes) {
  std::uint64_t hash = 0xcbf29ce484222325;
  for (const char byte : bytes) {
    hash = (hash ^ static_cast<unsigned char>(byte)) * 0x100000001b3;
  }
  return hash;
}

}  // namespace tallowin
