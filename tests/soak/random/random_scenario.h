#pragma once

#include <cstdint>
#include <iterator>
#include <nlohmann/json.hpp>
#include <random>
#include <string>
#include <string_view>

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

/// Draws a scenario: a desktop, what its user, its programs and its faults do, and, after a while in which nothing
/// happens any more, the quit. The same number gives the same scenario.
nlohmann::ordered_json drawScenario(std::uint64_t number);

/// Draws everything of a scenario but its script. A calm one has no fault of the machine, and nobody's applications
/// misbehave.
nlohmann::ordered_json drawDesktop(Dice& dice, bool calm);

/// One of the three displays that come and go, as a record of the scenario; they stand side by side.
nlohmann::ordered_json displayRecord(int id);

/// Whether calm scenarios may have this action of a script.
bool isCalmAction(const std::string& name);

}  // namespace tallowin
