#include "tests/soak/random/dice.h"

#include <map>
#include <sstream>

#include "base/url.h"

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
       return dice.fill(R"("~/?.local/share/Tallowin/spaces.json|.local/share/Tallowin/stats.json|)"
                        R"(.local/share/Tallowin/state.json|.local/share/Tallowin/profiles.json|)"
                        R"(.local/share/Tallowin/saved-spaces.json|.local/share/Tallowin/Layouts|)"
                        R"(.local/share/Tallowin|.config/tallowin/preferences.json")");
     }},
    {"$malformed", malformedSpaces},
};

std::string textOf(const Json& value) {
  return value.is_string() ? value.get<std::string>() : value.dump();
}

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
  if (const auto choice = text.find('?'); choice != std::string::npos && text.find('|') != std::string::npos) {
    std::vector<std::string> choices;
    std::istringstream stream(text.substr(choice + 1));
    for (std::string each; std::getline(stream, each, '|');) {
      choices.push_back(each);
    }
    text = text.substr(0, choice) + oneOf(choices);
  }
  if (const auto whole = kinds.find(text); whole != kinds.end()) {
    return whole->second(*this);
  }
  for (auto from = text.find('$'); from != std::string::npos; from = text.find('$', from)) {
    const auto to = text.find_first_not_of("abcdefghijklmnopqrstuvwxyz", from + 1);
    const auto value = textOf(kinds.at(text.substr(from, to == std::string::npos ? to : to - from))(*this));
    text = text.substr(0, from) + value + (to == std::string::npos ? "" : text.substr(to));
    from += value.size();
  }
  return text;
}

}  // namespace tallowin
