#pragma once

#include <string>
#include <vector>

#include "base/app_paths.h"
#include "core/space_store.h"
#include "platform/simulated/simulated_parts.h"
#include "tests/simulated_program.h"

namespace tallowin {

/// Where the program keeps its files on the simulated machine.
inline const std::string supportFolder = "/home/user/.local/share/Tallowin/";

/// A simulated desktop with a store of what the user has said about its Spaces.
struct AutomationProgram : SimulatedProgram {
  explicit AutomationProgram(std::string_view scenarioJSON) : SimulatedProgram(scenarioJSON) {}

  [[nodiscard]] SimulatedFiles& files() { return desktop.parts().files; }
  /// A file's content; "none" when there is no such file.
  [[nodiscard]] std::string fileText(const std::string& path) { return desktop.files().read(path).value_or("none"); }
  /// The Space of an ordinary desktop.
  [[nodiscard]] Space space(std::int64_t number) const { return snapshot().desktop(number).value_or(Space()); }
  [[nodiscard]] std::string id(std::int64_t number) const { return space(number).id; }

  /// Toasts since the last look at the journal: "text (symbol)", errors with "!" in front.
  [[nodiscard]] std::vector<std::string> takeToasts() {
    std::vector<std::string> toasts;
    for (const auto& record : take("toast")) {
      toasts.push_back((record.at("error") == true ? "! " : "") + record.at("text").get<std::string>() +
                       (record.contains("symbol") ? " (" + record.at("symbol").get<std::string>() + ")" : ""));
    }
    return toasts;
  }

  AppPaths paths{desktop.files(), desktop.folders()};
  SpaceStore store{{desktop.files(), images, desktop.workspace(), time, time, time, desktop.log(), settings, paths},
                   supportFolder + "spaces.json"};
};

}  // namespace tallowin
