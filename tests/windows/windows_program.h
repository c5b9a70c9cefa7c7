#pragma once

#include <memory>
#include <string>
#include <vector>

#include "commands/space_switcher.h"
#include "tests/storing_program.h"
#include "windows/layout_manager.h"
#include "windows/space_contents.h"
#include "windows/window_mover.h"

namespace tallowin {

/// A simulated desktop whose windows are known and can be moved, with the layouts on top.
struct WindowsProgram : StoringProgram {
  explicit WindowsProgram(std::string_view scenarioJSON) : StoringProgram(scenarioJSON) {
    watcher.start();
    contents.start();
    time.advance(std::chrono::milliseconds(200));
    lines.clear();
  }

  /// The windows of the desktop as they are now, as the program knows them.
  void readWindows() {
    contents.refresh();
    time.advance(std::chrono::milliseconds(200));
  }

  SpaceSwitcher switcher{{platform, settings}};
  SpaceContents contents{platform};
  std::unique_ptr<WindowMover> mover = std::make_unique<WindowMover>(platform, switcher);
  std::unique_ptr<LayoutManager> layouts = std::make_unique<LayoutManager>(services, contents, *mover);
};

/// Where layouts are on the simulated machine.
inline const std::string layoutFolder = "/home/user/.local/share/Tallowin/Layouts/";

}  // namespace tallowin
