#pragma once

#include <optional>
#include <string>

#include "core/space_meta.h"
#include "platform/clock.h"
#include "platform/property_list.h"

namespace tallowin {

/// A complete, named copy of what the user has said about the Spaces. Its JSON keys are its members' names.
struct SpaceProfile {
  std::string name;  ///< as the user typed it
  SpaceMetas metas;
  Date savedAt;  ///< to the second
  bool operator==(const SpaceProfile&) const = default;
};

[[nodiscard]] PropertyList toJson(const SpaceProfile& profile);

/// Nothing when a member is missing or has the wrong type.
[[nodiscard]] std::optional<SpaceProfile> profileFromJson(const PropertyList& json);

}  // namespace tallowin
