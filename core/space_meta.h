#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "platform/property_list.h"

namespace tallowin {

/// What happens when a Space is entered or left. Its JSON keys are its members' names.
struct SpaceAutomation {
  std::vector<std::string> launchApps;         ///< paths of applications to open on entering
  std::vector<std::string> openURLs;           ///< URLs or file paths to open on entering
  bool launchOnce = false;                     ///< open them only the first time while the program runs
  std::optional<std::string> shortcutOnEnter;  ///< name of a shortcut to run
  std::optional<std::string> shortcutOnLeave;
  std::optional<std::string> scriptOnEnter;  ///< shell command
  std::optional<std::string> scriptOnLeave;
  bool launchOnlyIfEmpty = false;               ///< open them only when the Space has no windows
  std::vector<std::string> pinnedApps;          ///< bundle identifiers whose new windows belong here
  std::optional<std::string> keystrokeOnEnter;  ///< a key combination such as "cmd+shift+1"
  bool hideOtherApps = false;                   ///< hide applications without a window here
  std::optional<std::string> browserApp;        ///< bundle identifier of a browser
  std::optional<std::string> browserProfile;    ///< name of its profile folder
  bool operator==(const SpaceAutomation&) const = default;
};

/// The record with every member that has a value; lists and flags always.
[[nodiscard]] PropertyList toJson(const SpaceAutomation& automation);

/// The record as written; a missing list reads as empty, a missing flag as false. Nothing when a member has the wrong
/// type.
[[nodiscard]] std::optional<SpaceAutomation> automationFromJson(const PropertyList& json);

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
