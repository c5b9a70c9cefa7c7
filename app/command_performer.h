#pragma once

#include <functional>
#include <map>
#include <optional>

#include "app/space_naming.h"
#include "automation/automation_runner.h"
#include "automation/record_services.h"
#include "commands/cli/request_job.h"
#include "commands/command_url.h"
#include "commands/commands_under_way.h"
#include "commands/space_command.h"
#include "commands/space_switcher.h"
#include "core/program_services.h"
#include "core/space.h"
#include "windows/window_commands.h"

namespace tallowin {

/// What may be wanted of one command otherwise than the settings say.
struct CommandOptions {
  bool follow = false;  ///< go along with a window that is moved
  bool ask = false;     ///< ask the user before a desktop is removed
};

/// Carries out commands, on the Spaces as they are when one comes. Main thread only.
class CommandPerformer {
 public:
  struct Services {
    const ProgramServices& program;
    SpaceHistory& history;
    SpaceSwitcher& switcher;
    WindowCommands& windows;
    RecordServices& records;
    NoteFiles& noteFiles;
    SpaceNaming& naming;
    CommandsUnderWay& underWay;
    /// Whether a Space has no windows.
    std::function<bool(const Space&)> isSpaceEmpty;
    /// Switches as this program's own doing. False when the desktop could not even be asked.
    std::function<bool(const Space&)> switchTo;
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
  /// A command that is being carried out: what each one does.
  struct Call;
  /// A switch that was asked for.
  struct Switch {
    std::string target;
    CommandAnswer answer;
  };

  void switchTo(const Space& space, const CommandAnswer& answer);
  void remove(const Space& space, const CommandAnswer& answer);
  void removeIfThere(const std::string& spaceID);

  const Services services_;
  std::map<std::string, Switch> switches_;  ///< the latest, by display
};

/// Adds the requests that are commands: in words, whose outcome is waited for, and as URLs, of which it is told what is
/// known at once. `openURL` performs a URL, or answers why not.
void addCommandRequests(RequestTable& table, const ProgramServices& services, CommandPerformer& performer,
                        CommandsUnderWay& underWay,
                        const std::function<std::optional<URLFault>(const std::string& url)>& openURL);

}  // namespace tallowin
