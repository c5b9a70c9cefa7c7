#pragma once

#include <cstddef>
#include <functional>
#include <vector>

namespace tallowin {

/// Hashes of members in order, each mixed into the ones before it. Any thread.
template <typename... Members>
[[nodiscard]] std::size_t combinedHash(const Members&... members) {
  constexpr std::size_t goldenRatio = 0x9e3779b97f4a7c15;  // 2^64 divided by the golden ratio spreads small values
  std::size_t result = 0;
  ((result ^= std::hash<Members>{}(members) + goldenRatio + (result << 6) + (result >> 2)), ...);
  return result;
}

/// The same of a list's elements, and of how many they are.
template <typename Element>
[[nodiscard]] std::size_t hashOfAll(const std::vector<Element>& elements) {
  std::size_t result = elements.size();
  for (const auto& element : elements) {
    result = combinedHash(result, element);
  }
  return result;
}

}  // namespace tallowin
