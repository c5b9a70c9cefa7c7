#pragma once

#include <cstdint>
#include <expected>
#include <functional>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "platform/property_list.h"
#include "platform/simulated/desktop_state.h"
#include "platform/simulated/mission_control.h"
#include "platform/simulated/virtual_time.h"

namespace tallowin {

class SimulatedDesktop;

/// A file of the simulated machine. Folders on the way to it exist.
struct ScenarioFile {
  std::string path;  ///< absolute; "~" at its beginning was replaced by the home folder
  std::string bytes;
  bool missing = false;     ///< takes away one that a simulated machine has by default
  bool unwritable = false;  ///< the file, or its path when there is none, refuses to be written
  bool operator==(const ScenarioFile&) const = default;
};

/// How the simulated Dock switches.
struct ScenarioDock {
  Duration switchTime = std::chrono::milliseconds{30};    ///< from the request to the arrival
  int bounces = 0;                                        ///< so many of the next gesture switches go back
  Duration bounceAfter = std::chrono::milliseconds{100};  ///< that long after their arrival
  bool operator==(const ScenarioDock&) const = default;
};

/// One entry of the script.
struct ScriptEntry {
  Duration at = Duration::zero();  ///< since the start
  PropertyList journalled;         ///< the entry as written, without "at"
  std::function<void(SimulatedDesktop&)> perform;
};

/// What a simulated desktop is like at the start and what then happens to it. docs/simulation.md describes the file.
struct Scenario {
  ClockSettings clock;
  /// When run() in virtual time ends. By default five seconds after the last entry of the script.
  Duration end = std::chrono::seconds{5};
  DesktopState desktop;
  ScenarioDock dock;
  MissionControlBehaviour missionControl;
  std::set<std::string, std::less<>> missingFunctions;
  std::set<std::uint32_t> notificationFailures;  ///< window-server events that cannot be registered for
  std::map<std::string, PropertyList> preferences;
  std::vector<ScenarioFile> files;
  bool diskFull = false;
  std::vector<ScriptEntry> script;  ///< in the order of the file

  /// Everything optional. The error is one line: JSON mistakes with line and column, others with the member's path.
  /// Total for any bytes.
  [[nodiscard]] static std::expected<Scenario, std::string> parse(std::string_view text);
};

}  // namespace tallowin
