#pragma once

#include <algorithm>
#include <memory>
#include <string>
#include <vector>

#include "base/app_paths.h"
#include "commands/space_switcher.h"
#include "platform/simulated/simulated_parts.h"
#include "tests/simulated_program.h"
#include "windows/layout_manager.h"
#include "windows/space_contents.h"
#include "windows/window_mover.h"

namespace tallowin {

/// A simulated desktop whose windows are known and can be moved, with the layouts on top.
struct WindowsProgram : SimulatedProgram {
  explicit WindowsProgram(std::string_view scenarioJSON) : SimulatedProgram(scenarioJSON) {
    contents.start();
    time.advance(std::chrono::milliseconds(200));
    lines.clear();
  }

  [[nodiscard]] DesktopState& state() { return desktop.parts().state; }

  /// The Spaces of a window; empty when it does not exist.
  [[nodiscard]] std::vector<ManagedSpaceID> spacesOf(WindowNumber window) {
    const auto* const found = state().window(window);
    return found != nullptr ? found->spaces : std::vector<ManagedSpaceID>();
  }

  [[nodiscard]] Space spaceNumbered(ManagedSpaceID managedID) const {
    for (const auto& space : snapshot().allSpaces()) {
      if (space.managedID == managedID) {
        return space;
      }
    }
    ADD_FAILURE() << "no Space " << managedID;
    return {};
  }

  /// The windows of the desktop as they are now, as the program knows them.
  void readWindows() {
    contents.refresh();
    time.advance(std::chrono::milliseconds(200));
  }

  /// Toasts since the last look at the journal: "text (symbol)", errors with "!" in front.
  [[nodiscard]] std::vector<std::string> takeToasts() {
    std::vector<std::string> toasts;
    for (const auto& record : take("toast")) {
      toasts.push_back((record.at("error") == true ? "! " : "") + record.at("text").get<std::string>() +
                       (record.contains("symbol") ? " (" + record.at("symbol").get<std::string>() + ")" : ""));
    }
    return toasts;
  }

  /// A file's content; "none" when there is no such file.
  [[nodiscard]] std::string fileText(const std::string& path) { return desktop.files().read(path).value_or("none"); }

  AppPaths paths{desktop.files(), desktop.folders()};
  SpaceSwitcher switcher{{bridge, desktop.accessibility(), desktop.events(), desktop.displays(), preferences,
                          desktop.system(), time, time, settings, desktop.log()}};
  SpaceContents contents{{desktop.windowList(), desktop.workspace(), bridge, desktop.workspaceNotifications(),
                          desktop.system(), time, time}};
  std::unique_ptr<WindowMover> mover = std::make_unique<WindowMover>(
      WindowMover::Services{switcher, bridge, desktop.windowList(), desktop.workspace(), desktop.accessibility(),
                            desktop.events(), desktop.system(), time, desktop.log()});
  std::unique_ptr<LayoutManager> layouts = std::make_unique<LayoutManager>(
      LayoutManager::Services{*mover, contents, desktop.accessibility(), bridge, desktop.displays(), desktop.files(),
                              paths, settings, time, time, desktop.log()});
};

/// Where layouts are on the simulated machine.
inline const std::string layoutFolder = "/home/user/.local/share/Tallowin/Layouts/";

}  // namespace tallowin
