#pragma once

#include <map>
#include <optional>
#include <string>

#include "core/space_automation.h"
#include "platform/property_list.h"

namespace tallowin {

/// What the user has said about one Space. Its JSON keys are its members' names; what is absent is not written.
struct SpaceMeta {
  std::optional<std::string> name;      ///< never empty
  std::optional<std::string> symbol;    ///< name of a system symbol image; as given
  std::optional<std::string> colorHex;  ///< as given
  std::optional<std::string> note;      ///< never empty
  std::optional<std::string> iconFile;  ///< file name of the custom icon in the icons folder
  std::optional<SpaceAutomation> automation;
  std::optional<std::string> group;  ///< label that clusters Spaces in lists; never empty
  /// Members that a newer version wrote and this one does not know, so that they survive.
  PropertyList others = PropertyList::object();
  bool operator==(const SpaceMeta&) const = default;

  /// Whether there is nothing in it.
  [[nodiscard]] bool isEmpty() const { return *this == SpaceMeta(); }
};

/// Records by Space id, or by "fs:" and a bundle identifier.
using SpaceMetas = std::map<std::string, SpaceMeta>;

[[nodiscard]] PropertyList toJson(const SpaceMetas& metas);

/// Nothing when the value, a record in it or a member of one has the wrong type.
[[nodiscard]] std::optional<SpaceMetas> metasFromJson(const PropertyList& json);

}  // namespace tallowin
