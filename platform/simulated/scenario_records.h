#pragma once

#include <functional>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "platform/simulated/desktop_state.h"
#include "platform/simulated/scenario_value.h"

namespace tallowin {

class SimulatedDesktop;

// What occurs both in a scenario's initial state and as arguments of its script.

/// A display, and whether it is to be the main one.
struct DisplayRecord {
  SimulatedDisplay display;
  bool main = false;
};
void readRecord(ScenarioObject& from, DisplayRecord& record);

void readRecord(ScenarioObject& from, SimulatedApplication& application);

/// "space" or "spaces"; nothing when neither is there.
struct SpacesRecord {
  std::optional<std::vector<ManagedSpaceID>> spaces;
};
void readRecord(ScenarioObject& from, SpacesRecord& record);

/// A window; without Spaces of its own it belongs on the active one where it is.
struct WindowRecord {
  SimulatedWindow window;
  bool onActiveSpace = false;

  /// The window as it is on this desktop.
  [[nodiscard]] SimulatedWindow placedIn(const DesktopState& state) const;
};
void readRecord(ScenarioObject& from, WindowRecord& record);

/// A key: a lower-case letter of the ANSI keyboard or a virtual key code.
struct KeyRecord {
  VirtualKeyCode code = 0;
};
void readValue(const ScenarioValue& from, KeyRecord& key);

void readRecord(ScenarioObject& from, SymbolicHotKey& hotKey);

/// What comes of requests to a desktop that is asked. What the object does not say stays as it is.
struct RequestRecord {
  std::optional<Duration> time;
  std::optional<Duration> tornFor;
  std::optional<SignTiming> signs;
  std::optional<NameSet> impossible;
  std::optional<NameSet> ignored;
  std::optional<NameSet> partly;

  void applyTo(RequestBehaviour& behaviour) const;
};
void readRecord(ScenarioObject& from, RequestRecord& record);

/// "text" or "base64"; empty without either.
struct BytesRecord {
  std::string bytes;
};
void readRecord(ScenarioObject& from, BytesRecord& record);

/// An absolute path of the simulated machine, its "~" replaced.
struct PathRecord {
  std::string path;
};
void readValue(const ScenarioValue& from, PathRecord& record);

/// What an action of the script does to the desktop when its time has come.
using ScriptAction = std::function<void(SimulatedDesktop&)>;

/// Reads the arguments of the action of this name, noting mistakes in the object. Nothing when there is no such action.
[[nodiscard]] std::optional<ScriptAction> readScriptAction(std::string_view name, ScenarioObject& arguments);

}  // namespace tallowin
