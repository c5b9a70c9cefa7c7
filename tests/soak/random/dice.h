#pragma once

#include <cstdint>
#include <nlohmann/json.hpp>
#include <random>
#include <string_view>
#include <vector>

namespace tallowin {

/// Random choices that follow from one number.
class Dice {
 public:
  using Json = nlohmann::ordered_json;

  explicit Dice(std::uint64_t number) : random_(number) {}

  /// A number from `least` to `most`.
  int pick(int least, int most) { return std::uniform_int_distribution<int>(least, most)(random_); }
  bool chance(int percent) { return pick(1, 100) <= percent; }

  template <typename Values>
  const auto& oneOf(const Values& values) {
    return values[static_cast<std::size_t>(pick(0, static_cast<int>(std::size(values)) - 1))];
  }

  /// The JSON in `pattern` with its open places filled: a text "?a|b" becomes one of the words; "$name" becomes a value
  /// of that kind, or its text where it stands within another text. The kinds are in dice.cpp.
  Json fill(std::string_view pattern) { return filled(Json::parse(pattern)); }

 private:
  Json filled(Json pattern);
  Json filledText(std::string text);

  std::mt19937_64 random_;
};

}  // namespace tallowin
