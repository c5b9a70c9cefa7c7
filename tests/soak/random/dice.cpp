#include <map>
#include <regex>

#include "base/url.h"
#include "tests/soak/random/random_scenario.h"

namespace tallowin {

namespace {

using Json = Dice::Json;
using Draw = Json (*)(Dice&);

template <int least, int most>
Json between(Dice& dice) {
  return dice.pick(least, most);
}

/// So many thousandths.
template <int most>
Json fraction(Dice& dice) {
  return dice.pick(0, most) / 1000.0;
}

Json words(Dice& dice) {
  return dice.oneOf(std::to_array<const char*>(
      {"", "Mail", "mail", "Größe & more", "a/b?c#d%20", "\"q\" \\ 'z'", "日本", "x y", "3", "next"}));
}

/// Entries that a reader must bear.
Json malformedSpaces(Dice& dice) {
  static const Json entries = Json::parse(R"([5, {}, null, {"ManagedSpaceID": 3}, {"ManagedSpaceID": 4.5, "uuid": "U"},
      {"ManagedSpaceID": 1, "uuid": ""}, {"ManagedSpaceID": 2, "uuid": "U", "type": "x"}, {"ManagedSpaceID": -1},
      {"ManagedSpaceID": 18446744073709551615}, {"ManagedSpaceID": 6, "uuid": "V", "type": 4, "pid": "nobody"}])");
  auto list = Json::array();
  const int displays = dice.pick(0, 3);
  for (int id = 1; id <= displays; ++id) {
    auto display = dice.fill(R"({"Display Identifier": "D15B0000-0000-4000-8000-00000000000$id"})");
    display["Current Space"] = dice.oneOf(entries);
    display["Spaces"] = {dice.oneOf(entries), dice.oneOf(entries), dice.oneOf(entries)};
    if (dice.chance(20)) {
      display.erase(dice.oneOf(std::to_array<const char*>({"Display Identifier", "Current Space", "Spaces"})));
    }
    list.push_back(dice.chance(10) ? dice.oneOf(entries) : display);
  }
  return list;
}

const std::map<std::string, Draw, std::less<>> kinds = {
    {"$id", between<1, 3>},
    {"$space", between<1, 10>},
    {"$pid", between<100, 105>},
    {"$window", between<10, 25>},
    {"$caller", between<1, 20>},
    {"$x", between<0, 1439>},
    {"$y", between<0, 899>},
    {"$side", between<30, 900>},
    {"$few", between<0, 4>},
    {"$room", between<0, 2000>},
    {"$key", between<118, 121>},
    {"$hour", between<10, 23>},
    {"$moment", fraction<400>},
    {"$while", fraction<3000>},
    {"$flag", [](Dice& dice) -> Json { return dice.chance(60); }},
    {"$number", [](Dice& dice) -> Json { return std::to_string(dice.pick(1, dice.chance(95) ? 6 : 25)); }},
    {"$words", words},
    {"$encoded", [](Dice& dice) -> Json { return percentEncoded(words(dice).get<std::string>()); }},
    {"$jump",
     [](Dice& dice) -> Json {
       return dice.pick(-9, 9) * dice.oneOf(std::to_array<double>({0.5, 700, 4000.25, 90'000}));
     }},
    {"$path",
     [](Dice& dice) {
       return dice.chance(10) ? Json("~/.config/tallowin/preferences.json")
                              : dice.fill(R"("~/.local/share/Tallowin?/spaces.json|/stats.json|/state.json|)"
                                          R"(/profiles.json|/saved-spaces.json|/Layouts|")");
     }},
    {"$malformed", malformedSpaces},
};

}  // namespace

Json Dice::filled(Json pattern) {
  if (pattern.is_string()) {
    return filledText(pattern);
  }
  if (pattern.is_structured()) {
    for (auto& element : pattern) {
      element = filled(std::move(element));
    }
  }
  return pattern;
}

Json Dice::filledText(std::string text) {
  static const std::regex choice("^([^?]*)\\?(.*\\|.*)$");
  static const std::regex bar("\\|");
  static const std::regex kind("\\$[a-z]+");
  std::smatch found;
  if (std::regex_match(text, found, choice)) {
    const std::string words = found[2];
    const std::sregex_token_iterator first(words.begin(), words.end(), bar, -1);
    text = found[1].str() + oneOf(std::vector<std::string>(first, {}));
  }
  if (const auto whole = kinds.find(text); whole != kinds.end()) {
    return whole->second(*this);
  }
  while (std::regex_search(text, found, kind)) {
    const auto value = kinds.at(found.str())(*this);
    text = found.prefix().str() + (value.is_string() ? value.get<std::string>() : value.dump()) + found.suffix().str();
  }
  return text;
}

}  // namespace tallowin
