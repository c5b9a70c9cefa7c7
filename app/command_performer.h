#pragma once

#include <functional>

#include "app/record_services.h"
#include "app/space_naming.h"
#include "app/stepping.h"
#include "app/window_commands.h"
#include "automation/note_files.h"
#include "base/settings.h"
#include "commands/space_command.h"
#include "commands/space_switcher.h"
#include "core/space_history.h"
#include "core/space_store.h"
#include "core/space_watcher.h"
#include "platform/pasteboard.h"
#include "platform/presentation.h"
#include "platform/toasts.h"

namespace tallowin {

/// Carries out commands against the watcher's latest snapshot. Main thread only.
class CommandPerformer {
 public:
  struct Services {
    SpaceWatcher& watcher;
    SpaceStore& store;
    SpaceHistory& history;
    SpaceSwitcher& switcher;
    const Settings& settings;
    Toasts& toasts;
    WindowCommands& windows;
    RecordServices& records;
    NoteFiles& noteFiles;
    SpaceNaming& naming;
    Presentation presentation;
    Pasteboard& pasteboard;
    /// Whether the demonstration mode is on.
    std::function<bool()> isDemo;
    /// Whether a Space has no windows.
    std::function<bool(const Space&)> isSpaceEmpty;
    /// Switches as this program's own doing.
    std::function<void(const Space&)> switchTo;
  };

  explicit CommandPerformer(Services services) : services_(std::move(services)) {}

  /// Does what the command asks for. Whatever the user must know is shown as a toast.
  void perform(const SpaceCommand& command);

  /// One for each command.
  void operator()(const command::SwitchTo& command);
  void operator()(const command::Step& command);
  void operator()(const command::Step2D& command);
  void operator()(const command::Back& command);
  void operator()(const command::Rename& command);
  void operator()(const command::Note& command);
  void operator()(const command::Notes& command);
  void operator()(const command::Setup& command);
  void operator()(const command::Profile& command) { services_.records.profileCommands.use(command.name); }
  void operator()(const command::Template& command) { services_.records.templateCommands.apply(command.name); }
  void operator()(const command::Windows& command) { services_.presentation.panels.showWindows(command.allSpaces); }
  void operator()(const command::Launcher& /*command*/) { services_.presentation.panels.showLauncher(); }
  void operator()(const command::Overview& /*command*/) { services_.presentation.overview.toggle(); }
  void operator()(const command::OpenSettings& /*command*/) {
    services_.presentation.settingsWindow.show(std::nullopt, std::nullopt);
  }
  void operator()(const command::Diagnostics& command);
  void operator()(const command::DemoTour& command);
  void operator()(const command::MoveWindow& command);
  void operator()(const command::MoveWindowStep& command) { services_.windows.moveFrontWindowStep(command.right); }
  void operator()(const command::RemoveDesktop& command);
  void operator()(const command::SaveLayout& /*command*/) { services_.windows.saveLayout(); }
  void operator()(const command::RestoreLayout& /*command*/) { services_.windows.restoreLayout(); }
  void operator()(const command::Eject& /*command*/) { services_.windows.eject(); }
  void operator()(const command::ToggleScratchpad& /*command*/) { services_.windows.toggleScratchpad(); }
  void operator()(const command::MinimizeAll& /*command*/) { services_.windows.minimizeAll(); }
  void operator()(const command::UndoMinimize& /*command*/) { services_.windows.undoMinimize(); }
  void operator()(const command::SaveAndClose& /*command*/) { services_.windows.saveAndClose(); }
  void operator()(const command::AddDesktop& /*command*/) { services_.windows.addDesktop(); }

 private:
  [[nodiscard]] const SpaceSnapshot& snapshot() { return services_.watcher.snapshot().get(); }
  [[nodiscard]] std::optional<Space> find(const SpaceRef& ref);
  void switchTo(const std::optional<Space>& space);
  void fail(const std::string& message);

  const Services services_;
};

}  // namespace tallowin
