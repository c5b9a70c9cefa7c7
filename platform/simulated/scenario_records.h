#pragma once

#include <map>
#include <optional>
#include <set>
#include <string>

#include "platform/simulated/desktop_state.h"
#include "platform/simulated/scenario.h"
#include "platform/simulated/scenario_value.h"

namespace tallowin {

/// Readers of the records that occur both in a scenario's initial state and as arguments of its script. Each asks the
/// object for its members and notes mistakes there.

/// A display, and whether it is to be the main one.
struct DisplayRecord {
  SimulatedDisplay display;
  bool main = false;
};
[[nodiscard]] DisplayRecord readDisplay(ScenarioObject& object);

[[nodiscard]] SimulatedApplication readApplication(ScenarioObject& object);

/// A window; without Spaces of its own it belongs on the active one where it is.
struct WindowRecord {
  SimulatedWindow window;
  bool onActiveSpace = false;

  /// The window as it is on this desktop.
  [[nodiscard]] SimulatedWindow placedIn(const DesktopState& state) const;
};
[[nodiscard]] WindowRecord readWindow(ScenarioObject& object);

/// "space" or "spaces"; nothing when neither is there.
[[nodiscard]] std::optional<std::vector<ManagedSpaceID>> readSpaces(ScenarioObject& object);

/// How long an application takes to answer; nothing for null, which stands for never.
[[nodiscard]] std::optional<Duration> readResponseTime(const ScenarioValue& value);

/// A key: a lower-case letter of the ANSI keyboard or a virtual key code.
[[nodiscard]] VirtualKeyCode readKey(const ScenarioValue& value);

/// What a symbolic hot key becomes: unbound, or bound and enabled or not.
struct HotKeyRecord {
  std::optional<SymbolicHotKeyBinding> binding;
  bool enabled = false;

  void applyTo(SymbolicHotKeys& hotKeys, int hotKey) const;
};
[[nodiscard]] HotKeyRecord readHotKey(ScenarioObject& object);

/// What comes of requests to a desktop that is asked. What the object does not say stays as it is.
struct RequestRecord {
  std::optional<Duration> time;
  std::optional<Duration> tornFor;
  std::optional<SignTiming> signs;
  std::map<std::string_view, std::set<std::string, std::less<>>> requests;  ///< by what comes of them

  void applyTo(RequestBehaviour& behaviour) const;
};
[[nodiscard]] RequestRecord readRequests(ScenarioObject& object);

/// "text" or "base64"; empty without either.
[[nodiscard]] std::string readBytes(ScenarioObject& object);

/// An absolute path of the simulated machine, its "~" replaced.
[[nodiscard]] std::string readPath(const ScenarioValue& value);

}  // namespace tallowin
