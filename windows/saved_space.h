#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "platform/clock.h"
#include "platform/geometry.h"
#include "platform/property_list.h"

namespace tallowin {

/// What was open on a Space that was saved and then closed. Its JSON keys are its members' names.
struct SavedSpace {
  std::string id;                                     ///< a UUID as text
  std::string name;                                   ///< what the Space was called
  Date savedAt;                                       ///< kept to the second
  std::vector<std::string> apps;                      ///< bundle identifiers, each once
  std::vector<std::string> urls;                      ///< the tabs of those applications that are browsers
  std::map<std::string, std::vector<CGRect>> frames;  ///< of the windows, by bundle identifier; origin top left
  /// Browsers among `apps` of which no tabs could be had, so that nothing in `urls` stands for them. Written only when
  /// there are any.
  std::vector<std::string> browsersWithoutTabs;
  bool operator==(const SavedSpace&) const = default;
};

[[nodiscard]] PropertyList toJson(const SavedSpace& space);

/// Nothing when a member has the wrong type, or the id, name or date is missing; other missing members read as empty.
[[nodiscard]] std::optional<SavedSpace> savedSpaceFromJson(const PropertyList& json);

/// All of a file's records; nothing unless it is a list of good ones.
[[nodiscard]] std::optional<std::vector<SavedSpace>> savedSpacesFromJson(const PropertyList& json);

}  // namespace tallowin
