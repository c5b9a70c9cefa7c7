#include "base/setting_text.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <numeric>
#include <vector>

#include "base/decimal_integer.h"
#include "base/json_text.h"
#include "base/words.h"

namespace tallowin {

namespace {

std::optional<PropertyList> wholeNumber(std::string_view text) {
  const auto number = decimalInteger(text);
  return number ? std::optional<PropertyList>(*number) : std::nullopt;
}

std::optional<PropertyList> finiteReal(std::string_view text) {
  double number = 0;
  const auto* const begin = text.data();
  const auto* const end = begin + text.size();
  const auto [stopped, error] = std::from_chars(begin, end, number);
  const bool good = error == std::errc() && stopped == end && std::isfinite(number);
  return good ? std::optional<PropertyList>(number) : std::nullopt;
}

std::optional<PropertyList> json(SettingType type, std::string_view text) {
  const auto value = parseJSON(text);
  return value ? valueOfType(type, *value) : std::nullopt;
}

std::optional<PropertyList> readAs(SettingType type, std::string_view text) {
  switch (type) {
    case SettingType::boolean:
      return json(type, text);
    case SettingType::real:
      return finiteReal(text);
    case SettingType::integer:
      return wholeNumber(text);
    case SettingType::text:
      return PropertyList(text);
    case SettingType::textList:
    case SettingType::textMap:
      return json(type, text);
  }
  return std::nullopt;
}

/// How many single-character edits turn one text into the other (Levenshtein distance).
std::size_t distance(std::string_view a, std::string_view b) {
  std::vector<std::size_t> row(b.size() + 1);
  std::iota(row.begin(), row.end(), std::size_t{0});
  for (std::size_t i = 1; i <= a.size(); ++i) {
    std::size_t diagonal = std::exchange(row[0], i);
    for (std::size_t j = 1; j <= b.size(); ++j) {
      const std::size_t substituted = diagonal + (a[i - 1] == b[j - 1] ? 0 : 1);
      diagonal = std::exchange(row[j], std::min({row[j] + 1, row[j - 1] + 1, substituted}));
    }
  }
  return row.back();
}

}  // namespace

std::expected<PropertyList, std::string> settingFromText(const Setting& setting, std::string_view text) {
  const auto key = std::string(setting.key);
  auto value = readAs(setting.type, text);
  if (!value) {
    return std::unexpected("the setting " + key + " takes " + std::string(nameOfType(setting.type)) + ", not \"" +
                           std::string(text) + "\"");
  }
  if (!setting.cases.empty() && std::ranges::find(setting.cases, text) == setting.cases.end()) {
    return std::unexpected("the setting " + key + " is one of " + joined(setting.cases, ", ") + ", not \"" +
                           std::string(text) + "\"");
  }
  return *std::move(value);
}

std::string textOfSetting(const Setting& setting, const PropertyList& value) {
  if (!value.is_string()) {
    return compactJSON(value);
  }
  const auto text = value.get<std::string>();
  const bool reads = setting.cases.empty() || std::ranges::find(setting.cases, text) != setting.cases.end();
  return reads ? text : std::string(setting.fallback);
}

std::string unknownSettingMessage(std::string_view key) {
  const auto message = "there is no setting called \"" + std::string(key) + "\"";
  constexpr std::size_t farthestSuggestion = 4;
  const auto& table = settingsTable();
  const auto nearest =
      std::ranges::min_element(table, {}, [key](const Setting& setting) { return distance(key, setting.key); });
  if (key.size() > 64 || distance(key, nearest->key) > farthestSuggestion) {
    return message + "; --settings-list lists them all";
  }
  return message + "; did you mean " + std::string(nearest->key) + "?";
}

}  // namespace tallowin
