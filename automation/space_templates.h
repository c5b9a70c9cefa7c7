#pragma once

#include <cstddef>
#include <expected>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/json_text.h"
#include "base/lifetime.h"
#include "commands/outcome.h"
#include "core/program_services.h"
#include "platform/pinned.h"
#include "platform/property_list.h"
#include "windows/space_management.h"

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
  /// How many Spaces a template was laid onto, and how many it would have needed beyond those there are.
  struct Outcome {
    std::size_t applied = 0;
    std::size_t missing = 0;
    bool operator==(const Outcome&) const = default;
  };

  explicit SpaceTemplates(const ProgramServices& services);

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

  const ProgramServices& services_;
  RecordFile file_;
};

/// The user's commands about templates, with what the user is told and asked. Main thread only.
class TemplateCommands : Pinned {
 public:
  /// Desktops that were added are looked for this long, this often.
  static constexpr Duration patience = std::chrono::seconds(3);
  static constexpr Duration pollInterval = std::chrono::milliseconds(100);
  /// Mission Control takes so long to close before it can be opened for the next one.
  static constexpr Duration closingTime = std::chrono::milliseconds(500);

  TemplateCommands(const ProgramServices& services, SpaceTemplates& templates, SpaceManagement& management)
      : services_(services), templates_(templates), management_(management) {}

  /// Applies the template of this name. When there are too few desktops, asks whether to add the others, and then adds
  /// them and applies it again; what becomes of that is not waited for.
  Outcome apply(const std::string& name);

  /// Whether desktops are being added that the template will name.
  [[nodiscard]] bool isAddingDesktops() const { return adding_; }

 private:
  void askToAdd(const SpaceTemplate& layout, SpaceTemplates::Outcome outcome);
  void addMissing(const SpaceTemplate& layout);
  /// Adds so many desktops, one after the other, until there are `wanted` Spaces.
  void add(const SpaceTemplate& layout, std::size_t count, std::size_t wanted);
  void applyWhenThere(const SpaceTemplate& layout, std::size_t wanted, Duration patienceLeft);

  const ProgramServices& services_;
  SpaceTemplates& templates_;
  SpaceManagement& management_;
  WorkItem waiting_;
  bool adding_ = false;
  Lifetime lifetime_;
};

/// What the settings window says of a template that was applied, on such a desktop.
[[nodiscard]] std::string setUpSentence(SpaceTemplates::Outcome outcome, const DesktopTexts& texts);

/// The templates for reading, one line each: name, number of Spaces, summary. Columns are aligned.
[[nodiscard]] std::string templateList(const std::vector<SpaceTemplate>& templates);

}  // namespace tallowin
