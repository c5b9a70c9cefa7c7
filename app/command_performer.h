#pragma once

#include <functional>
#include <map>

#include "app/space_naming.h"
#include "automation/note_files.h"
#include "automation/record_services.h"
#include "base/settings.h"
#include "commands/commands_under_way.h"
#include "commands/space_command.h"
#include "commands/space_switcher.h"
#include "commands/stepping.h"
#include "core/space_history.h"
#include "core/space_store.h"
#include "core/space_watcher.h"
#include "platform/pasteboard.h"
#include "platform/presentation.h"
#include "platform/toasts.h"
#include "windows/window_commands.h"

namespace tallowin {

/// What may be wanted of one command otherwise than the settings say.
struct CommandOptions {
  bool follow = false;  ///< go along with a window that is moved
};

/// Carries out commands, on the Spaces as they are when one comes. Main thread only.
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
    CommandsUnderWay& underWay;
    /// Whether the demonstration mode is on.
    std::function<bool()> isDemo;
    /// Whether a Space has no windows.
    std::function<bool(const Space&)> isSpaceEmpty;
    /// Switches as this program's own doing. False when the desktop could not even be asked.
    std::function<bool(const Space&)> switchTo;
    /// The report for support requests.
    std::function<std::string()> diagnostics;
  };

  explicit CommandPerformer(Services services) : services_(std::move(services)) {}

  /// Does what the command asks for. Whatever the user must know is shown as a toast. `told` runs once, with what
  /// became of it: inside the call, or when that is seen, after 2 seconds at the latest (4 for adding and removing
  /// desktops).
  void perform(
      const SpaceCommand& command, CommandOptions options = {},
      OutcomeHandler told = [](const Outcome& /*outcome*/) {});

  /// Switches for something else than a command, such as a jump to a mark. Who asks later sees it all the same.
  void switchTo(const Space& space);

 private:
  /// A command that is being carried out.
  struct Call {
    CommandAnswer answer;
    CommandOptions options;
  };

  // One for each command.
  void perform(const command::SwitchTo& command, const Call& call);
  void perform(const command::Step& command, const Call& call);
  void perform(const command::Step2D& command, const Call& call);
  void perform(const command::Back& command, const Call& call);
  void perform(const command::Rename& command, const Call& call);
  void perform(const command::Note& command, const Call& call);
  void perform(const command::Notes& command, const Call& call);
  void perform(const command::Setup& command, const Call& call);
  void perform(const command::Profile& command, const Call& call);
  void perform(const command::Template& command, const Call& call);
  void perform(const command::Windows& command, const Call& call);
  void perform(const command::Launcher& command, const Call& call);
  void perform(const command::Overview& command, const Call& call);
  void perform(const command::OpenSettings& command, const Call& call);
  void perform(const command::Diagnostics& command, const Call& call);
  void perform(const command::DemoTour& command, const Call& call);
  void perform(const command::MoveWindow& command, const Call& call);
  void perform(const command::MoveWindowStep& command, const Call& call);
  void perform(const command::RemoveDesktop& command, const Call& call);
  void perform(const command::SaveLayout& command, const Call& call);
  void perform(const command::RestoreLayout& command, const Call& call);
  void perform(const command::Eject& command, const Call& call);
  void perform(const command::ToggleScratchpad& command, const Call& call);
  void perform(const command::MinimizeAll& command, const Call& call);
  void perform(const command::UndoMinimize& command, const Call& call);
  void perform(const command::SaveAndClose& command, const Call& call);
  void perform(const command::AddDesktop& command, const Call& call);

  [[nodiscard]] const SpaceSnapshot& snapshot() { return services_.watcher.latest(); }
  [[nodiscard]] std::optional<Space> find(const SpaceRef& ref, const CommandAnswer& answer);
  void switchTo(const Space& space, const CommandAnswer& answer);
  void switchTo(const std::optional<Space>& space, std::string_view ifNone, const CommandAnswer& answer);
  void fail(const std::string& message, const CommandAnswer& answer);
  [[nodiscard]] bool follows(const Call& call) const;

  /// A switch that was asked for.
  struct Switch {
    std::string target;
    CommandAnswer answer;
  };

  const Services services_;
  std::map<std::string, Switch> switches_;  ///< the latest, by display
};

}  // namespace tallowin
