#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

#include "platform/property_list.h"

namespace tallowin {

/// Reads a record's members one by one. A member that is missing or null reads as absent (false, an empty list); one of
/// the wrong type makes the whole record a bad one.
class RecordReader {
 public:
  /// `record` must outlive the reader. Anything but an object is a bad record.
  explicit RecordReader(const PropertyList& record) : record_(record), good_(record.is_object()) {}

  std::optional<std::string> text(std::string_view key);
  bool boolean(std::string_view key);
  std::vector<std::string> textList(std::string_view key);
  /// The member itself, null members counting as missing.
  const PropertyList* member(std::string_view key);

  void fail() { good_ = false; }
  /// Whether everything read so far had its type.
  [[nodiscard]] bool good() const { return good_; }

 private:
  const PropertyList& record_;
  bool good_;
};

/// What `read` makes of every element of a list; nothing for anything but a list, or when one of them cannot be read.
template <typename Read>
auto listFromJson(const PropertyList& json, const Read& read) {
  using Values = std::vector<typename std::invoke_result_t<Read, const PropertyList&>::value_type>;
  auto values = json.is_array() ? std::optional<Values>(std::in_place) : std::nullopt;
  for (auto element = json.begin(); values && element != json.end(); ++element) {
    if (auto value = read(*element)) {
      values->push_back(*std::move(value));
    } else {
      values.reset();
    }
  }
  return values;
}

/// The list of what `write` makes of each value.
template <typename Values, typename Write>
PropertyList listToJson(const Values& values, const Write& write) {
  auto list = PropertyList::array();
  for (const auto& value : values) {
    list.push_back(write(value));
  }
  return list;
}

}  // namespace tallowin
