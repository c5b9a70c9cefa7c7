#pragma once

#include <functional>

#include "automation/backups.h"
#include "automation/profile_store.h"
#include "automation/settings_transfer.h"
#include "automation/space_templates.h"
#include "automation/state_exporter.h"
#include "automation/template_commands.h"
#include "automation/time_tracker.h"
#include "base/app_paths.h"
#include "core/space_watcher.h"
#include "platform/platform.h"
#include "windows/space_management.h"

namespace tallowin {

/// Everything that keeps records and moves them, put together. Main thread only.
struct RecordServices {
  struct Context {
    const Platform& platform;
    Storage& storage;
    const Settings& settings;
    const AppPaths& paths;
    SpaceStore& store;
    SpaceWatcher& watcher;
    SpaceChanges& changes;
    SpaceContents& contents;
    SpaceManagement& management;
    const ProgramVersion version;
  };

  explicit RecordServices(const Context& context);
  RecordServices(const RecordServices&) = delete;
  RecordServices& operator=(const RecordServices&) = delete;

  /// As the commands of these names do for the user, after a copy was made of what they replace.
  Outcome useProfile(const std::string& name);
  Outcome applyTemplate(const std::string& name);

  TimeTracker tracker;
  ProfileStore profiles;
  ProfileCommands profileCommands;
  AutomaticProfile automaticProfile;
  SpaceTemplates templates;
  TemplateCommands templateCommands;
  SettingsTransfer transfer;
  Backups backups;
  StateExporter stateExporter;
};

/// What must be right for everything to work. May wait for other programs, a second at most.
[[nodiscard]] std::vector<SetUpCheck> setUpChecks(const Platform& platform, const Storage& storage);

}  // namespace tallowin
