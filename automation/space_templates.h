#pragma once

#include <cstddef>
#include <expected>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/app_paths.h"
#include "base/foreign_json.h"
#include "base/record_file.h"
#include "core/space_store.h"
#include "platform/property_list.h"
#include "platform/workspace.h"

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

/// The built-in templates and those that the user has imported, which are kept in "templates.json" in the support
/// folder and read anew every time; a file that cannot be read or understood counts as empty. Main thread only.
class SpaceTemplates {
 public:
  struct Services {
    SpaceStore& store;
    Workspace& workspace;
    Files& files;
    Storage& storage;
    const AppPaths& paths;
  };

  /// How many Spaces a template was laid onto, and how many it would have needed beyond those there are.
  struct Outcome {
    std::size_t applied = 0;
    std::size_t missing = 0;
    bool operator==(const Outcome&) const = default;
  };

  explicit SpaceTemplates(Services services);

  /// Every template, built-in ones first.
  [[nodiscard]] std::vector<SpaceTemplate> list();
  /// The first template of exactly this name, else the first one ignoring case.
  [[nodiscard]] std::optional<SpaceTemplate> named(std::string_view name);

  /// Takes one template from a JSON file, in place of an imported one of exactly the same name. On failure nothing has
  /// changed. What cannot be written counts all the same, and is tried again.
  [[nodiscard]] std::expected<SpaceTemplate, ForeignFault> importFile(const std::filesystem::path& path);

  /// Lays the template onto the ordinary desktops of the menu-bar display, in their order: names, symbols, colours and
  /// notes take those of the slots, also where a slot has none; applications and URLs open when an empty Space is
  /// entered. Applications that are not installed are left out, and everything else in automations stays.
  Outcome apply(const SpaceTemplate& layout, const SpaceSnapshot& snapshot);

  /// What apply() would answer. Changes nothing.
  [[nodiscard]] static Outcome outcome(const SpaceTemplate& layout, const SpaceSnapshot& snapshot);

 private:
  [[nodiscard]] PropertyList readImported();
  void fill(const SpaceTemplate::Slot& slot, const std::string& id);
  [[nodiscard]] std::vector<std::string> installed(const std::vector<std::string>& bundles);

  const Services services_;
  RecordFile file_;
};

}  // namespace tallowin
