#pragma once

#include <functional>
#include <set>

#include "base/app_paths.h"
#include "base/settings.h"
#include "commands/space_switcher.h"
#include "core/space_store.h"
#include "platform/platform.h"
#include "windows/app_rules.h"
#include "windows/browser_tabs_reader.h"
#include "windows/focus_memory.h"
#include "windows/layout_manager.h"
#include "windows/reconnect_restore.h"
#include "windows/restart_offer.h"
#include "windows/saved_spaces.h"
#include "windows/scratchpad.h"
#include "windows/space_contents.h"
#include "windows/space_lock.h"
#include "windows/space_management.h"
#include "windows/space_minimizer.h"
#include "windows/window_marks.h"
#include "windows/window_mover.h"

namespace tallowin {

/// Everything that has to do with windows, put together and connected. Main thread only.
struct WindowServices {
  struct Context {
    const Platform& platform;
    Storage& storage;
    const Settings& settings;
    const AppPaths& paths;
    SpaceStore& store;
    SpaceSwitcher& switcher;
    BrowserTabsReader browserTabs;
    SpaceWatcher& watcher;
    std::function<void(const Space&)> switchTo;  ///< switches as this program's own doing
  };

  explicit WindowServices(const Context& context);
  WindowServices(const WindowServices&) = delete;
  WindowServices& operator=(const WindowServices&) = delete;

  /// Whether a Space has no windows. Before the first reading of the contents, as when the first Space is entered at
  /// the start, they are read for it, here and below.
  [[nodiscard]] bool isEmpty(const Space& space) { return appsOn(space).empty(); }

  /// The applications that have windows on a Space.
  [[nodiscard]] std::set<ProcessID> appsOn(const Space& space);

  const DesktopTexts& texts;
  SpaceContents contents;
  WindowMover mover;
  FocusMemory focusMemory;
  SpaceLock spaceLock;
  PulledAwayReaction pulledAway;
  AppRules appRules;
  SpaceMinimizer minimizer;
  Scratchpad scratchpad;
  WindowMarks marks;
  MarkCommands markCommands;
  LayoutManager layouts;
  LayoutCommands layoutCommands;
  ReconnectRestore reconnect;
  RestartOffer restartOffer;
  SavedSpaces savedSpaces;
  SavedSpaceCommands savedSpaceCommands;
  SpaceManagement management;
};

}  // namespace tallowin
