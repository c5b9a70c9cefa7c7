#include "base/record_reader.h"

#include "base/property_list_reading.h"
#include "base/settings_table.h"

namespace tallowin {

const PropertyList* RecordReader::member(std::string_view key) {
  const auto* found = property_list::member(record_, key);
  return found != nullptr && !found->is_null() ? found : nullptr;
}

std::optional<std::string> RecordReader::text(std::string_view key) {
  const auto* found = member(key);
  if (found == nullptr) {
    return std::nullopt;
  }
  auto value = property_list::text(*found);
  good_ = good_ && value.has_value();
  return value;
}

bool RecordReader::boolean(std::string_view key) {
  const auto* found = member(key);
  if (found == nullptr) {
    return false;
  }
  const auto value = property_list::boolean(*found);
  good_ = good_ && value.has_value();
  return value.value_or(false);
}

std::vector<std::string> RecordReader::textList(std::string_view key) {
  const auto* found = member(key);
  if (found == nullptr) {
    return {};
  }
  const auto value = valueOfType(SettingType::textList, *found);
  good_ = good_ && value.has_value();
  return value ? value->get<std::vector<std::string>>() : std::vector<std::string>();
}

}  // namespace tallowin
