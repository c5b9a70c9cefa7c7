#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "automation/automation_runner.h"
#include "base/settings.h"

namespace tallowin {

/// A key combination and what it does.
struct Shortcut {
  std::string keys;                    ///< as people write it, such as "ctrl+alt+1"
  std::optional<Keystroke> keystroke;  ///< nothing for a text that is no key combination
  std::string action;                  ///< a tallowin:// URL, or words as the command line takes them
  std::string name;                    ///< for messages, such as "Desktop 1"; of the user's own ones, `keys`
  /// Which desktops it switches to, where window managers may have the same key of their own.
  enum class Switches { no, byStep, byNumber } switches = Switches::no;
  bool operator==(const Shortcut&) const = default;
};

/// Reads a key combination as automations write keystrokes; "super" is "cmd".
[[nodiscard]] std::optional<Keystroke> keyCombination(std::string_view text);

/// The shortcuts that the settings ask for: the user's own, and those presets whose combination he has not given to
/// something else. The overview's is among them if there is an overview.
[[nodiscard]] std::vector<Shortcut> shortcutsOf(const Settings& settings, bool hasOverview);

}  // namespace tallowin
