#pragma once

#include <functional>
#include <set>

#include "commands/cli/request_job.h"
#include "commands/space_switcher.h"
#include "core/program_services.h"
#include "platform/pinned.h"
#include "windows/automatic_restore.h"
#include "windows/conveniences.h"
#include "windows/layout_manager.h"
#include "windows/saved_spaces.h"
#include "windows/space_contents.h"
#include "windows/space_management.h"
#include "windows/window_marks.h"
#include "windows/window_mover.h"

namespace tallowin {

/// Everything that has to do with windows, put together and connected. Main thread only.
struct WindowServices : private Pinned {
  /// `switchTo` switches as this program's own doing.
  WindowServices(const ProgramServices& services, SpaceSwitcher& switcher, std::function<void(const Space&)> switchTo);

  /// Whether a Space has no windows. Before the first reading of the contents, as when the first Space is entered at
  /// the start, they are read for it, here and below.
  [[nodiscard]] bool isEmpty(const Space& space) { return appsOn(space).empty(); }

  /// The applications that have windows on a Space.
  [[nodiscard]] std::set<ProcessID> appsOn(const Space& space);

  SpaceContents contents;
  WindowMover mover;
  FocusMemory focusMemory;
  SpaceLock spaceLock;
  AppRules appRules;
  SpaceMinimizer minimizer;
  Scratchpad scratchpad;
  WindowMarks marks;
  LayoutManager layouts;
  ReconnectRestore reconnect;
  RestartOffer restartOffer;
  SavedSpaces savedSpaces;
  SpaceManagement management;
};

/// Has requests about windows answered. What is handed in must outlive the table. Main thread only.
void addWindowRequests(RequestTable& table, const ProgramServices& services, WindowServices& windows);

}  // namespace tallowin
