#pragma once

#include <optional>
#include <string>
#include <string_view>
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

}  // namespace tallowin
