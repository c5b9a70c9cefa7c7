#pragma once

#include <map>
#include <optional>

#include "platform/window_server.h"

namespace tallowin {

/// The system's table of symbolic hot keys that concern Spaces: 79 moves left a Space, 81 moves right a Space, 118 to
/// 133 switch to Desktop 1 to 16. The state lives as long as the process.
class SymbolicHotKeys {
 public:
  /// The whole table as a fresh account has it: arrows with Control, digits with Control for the first ten desktops
  /// and with Control and Option for the rest; all bound and enabled.
  SymbolicHotKeys();

  [[nodiscard]] std::optional<SymbolicHotKeyBinding> binding(int hotKey) const;
  [[nodiscard]] bool isEnabled(int hotKey) const;
  /// False for a hot key that the table does not have.
  bool setEnabled(int hotKey, bool enabled);
  /// Binds a hot key, or takes its binding away. It keeps its enabled state; a new one starts disabled.
  void bind(int hotKey, std::optional<SymbolicHotKeyBinding> binding);

  /// The enabled hot key that this press triggers, comparing the four modifiers only.
  [[nodiscard]] std::optional<int> match(VirtualKeyCode keyCode, std::uint64_t flags) const;

 private:
  struct Entry {
    std::optional<SymbolicHotKeyBinding> binding;
    bool enabled = false;
  };
  std::map<int, Entry> entries_;
};

}  // namespace tallowin
