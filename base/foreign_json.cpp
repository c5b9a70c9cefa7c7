#include "base/foreign_json.h"

#include <optional>
#include <set>
#include <tuple>
#include <vector>

#include "base/json_text.h"

namespace tallowin {

namespace {

/// A key that stands twice in one object of a well-formed text.
std::optional<std::string> repeatedKey(std::string_view text) {
  std::optional<std::string> repeated;
  std::vector<std::set<std::string>> keys;
  const auto look = [&](int /*depth*/, PropertyList::parse_event_t event, PropertyList& value) {
    if (event == PropertyList::parse_event_t::object_start) {
      keys.emplace_back();
    } else if (event == PropertyList::parse_event_t::object_end) {
      keys.pop_back();
    } else if (event == PropertyList::parse_event_t::key && !keys.back().insert(value.get<std::string>()).second) {
      repeated = value.get<std::string>();
    }
    return true;
  };
  std::ignore = PropertyList::parse(text, look, false);
  return repeated;
}

std::string tooLarge(std::uint64_t size) {
  return "it has " + std::to_string(size) + " bytes, and " + std::to_string(largestForeignFile) + " are the most";
}

}  // namespace

std::expected<PropertyList, std::string> parseForeignJSON(std::string_view bytes) {
  if (bytes.size() > largestForeignFile) {
    return std::unexpected(tooLarge(bytes.size()));
  }
  auto json = parseJSON(bytes);
  if (json) {
    if (const auto key = repeatedKey(bytes)) {
      return std::unexpected("the key " + compactJSON(*key) + " stands twice in one object");
    }
  }
  return json;
}

std::expected<std::string, ForeignFault> readForeignFile(Files& files, const std::filesystem::path& path,
                                                         const std::string& notUnderstood) {
  if (const auto stamp = files.stamp(path); stamp && stamp->size > largestForeignFile) {
    return std::unexpected(ForeignFault{notUnderstood, tooLarge(stamp->size), false});
  }
  auto bytes = files.read(path);
  return bytes ? std::expected<std::string, ForeignFault>(*std::move(bytes))
               : std::unexpected(ForeignFault{"That file cannot be read.", bytes.error().description, true});
}

std::expected<PropertyList, ForeignFault> readForeignJSON(Files& files, const std::filesystem::path& path,
                                                          const std::string& notUnderstood) {
  const auto bytes = readForeignFile(files, path, notUnderstood);
  if (!bytes) {
    return std::unexpected(bytes.error());
  }
  auto json = parseForeignJSON(*bytes);
  return json ? std::expected<PropertyList, ForeignFault>(*std::move(json))
              : std::unexpected(ForeignFault{notUnderstood, json.error(), false});
}

}  // namespace tallowin
