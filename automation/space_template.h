#pragma once

#include <optional>
#include <string>
#include <vector>

#include "platform/property_list.h"

namespace tallowin {

/// What to make of a number of Spaces, in their order. The JSON keys are the members' names.
struct SpaceTemplate {
  /// What to make of one of them.
  struct Slot {
    std::string name;
    std::optional<std::string> symbol;    ///< name of a system symbol image
    std::optional<std::string> colorHex;  ///< such as "#9B6BF4"
    std::optional<std::string> note;
    std::vector<std::string> apps;  ///< bundle identifiers of the applications to open there
    std::vector<std::string> urls;  ///< to open there
    bool operator==(const Slot&) const = default;
  };

  std::string name;
  std::string summary;  ///< one line
  std::vector<Slot> slots;
  bool operator==(const SpaceTemplate&) const = default;

  /// Those that come with the program.
  [[nodiscard]] static const std::vector<SpaceTemplate>& builtIn();
};

[[nodiscard]] PropertyList toJson(const SpaceTemplate& layout);

/// Nothing when the name, the summary or the slots, or the name of a slot, is missing or has the wrong type, or
/// another member has the wrong type.
[[nodiscard]] std::optional<SpaceTemplate> templateFromJson(const PropertyList& json);

}  // namespace tallowin
