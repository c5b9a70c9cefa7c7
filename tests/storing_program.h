#pragma once

#include <string>

#include "base/app_paths.h"
#include "core/program_services.h"
#include "tests/simulated_program.h"

namespace tallowin {

/// Where the program keeps its files on the simulated machine.
inline const std::string supportFolder = "/home/user/.local/share/Tallowin/";

/// A simulated desktop with a store of what the user has said about its Spaces.
struct StoringProgram : SimulatedProgram {
  using SimulatedProgram::SimulatedProgram;

  /// The Space of an ordinary desktop.
  [[nodiscard]] Space space(std::int64_t number) const { return snapshot().desktop(number).value_or(Space()); }
  [[nodiscard]] std::string id(std::int64_t number) const { return space(number).id; }

  AppPaths paths{desktop.files(), desktop.folders()};
  SpaceStore store{{desktop.files(), images, desktop.workspace(), desktop.log(), settings, paths},
                   storage,
                   supportFolder + "spaces.json"};
  SpaceWatcher watcher{{provider, spaces, DesktopKind::driven, desktop.workspaceNotifications(),
                        desktop.defaultNotifications(), desktop.files(), desktop.folders(), settings, time,
                        desktop.log()}};
  const ProgramServices services{platform, storage, settings, paths, store, watcher, {"0.1.0", "77"}};
};

}  // namespace tallowin
