#pragma once

#include <functional>
#include <string>
#include <vector>

#include "automation/diagnostics.h"
#include "automation/profile_store.h"
#include "automation/settings_transfer.h"
#include "automation/space_templates.h"
#include "automation/time_tracker.h"
#include "base/record_file.h"
#include "base/subscriptions.h"
#include "core/space_changes.h"
#include "platform/pinned.h"
#include "windows/space_contents.h"

namespace tallowin {

/// Keeps "state.json" in the support folder up to date, for other programs on the machine: the state record as it is
/// 0.4 seconds after the last change of the Spaces, of what is said of them and of what is on them. Main thread only.
class StateExporter : Pinned {
 public:
  static constexpr Duration delay = std::chrono::milliseconds(400);

  /// Watches from now on.
  StateExporter(const ProgramServices& services, SpaceChanges& changes, SpaceContents& contents);

  /// Writes the file 0.4 seconds after the last call of a run of them; not before the first snapshot, as until then
  /// nothing is known.
  void schedule();

 private:
  const ProgramServices& services_;
  const SpaceContents& contents_;
  RecordFile file_;
  Subscriptions observers_;
};

/// Everything that keeps records and moves them, put together. Main thread only.
struct RecordServices : private Pinned {
  RecordServices(const ProgramServices& services, SpaceChanges& changes, SpaceContents& contents,
                 SpaceManagement& management);

  /// As the commands of these names do for the user, after a copy was made of what they replace.
  Outcome useProfile(const std::string& name);
  Outcome applyTemplate(const std::string& name);

  /// The names of the shortcuts that other programs have taken, for the report.
  std::function<std::vector<std::string>()> shortcutFailures = [] { return std::vector<std::string>(); };

  TimeTracker tracker;
  ProfileStore profiles;
  SpaceTemplates templates;
  TemplateCommands templateCommands;
  SettingsTransfer transfer;
  Backups backups;
  StateExporter stateExporter;
};

}  // namespace tallowin
