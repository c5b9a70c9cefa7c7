#include "triggers/shortcuts.h"

#include <algorithm>
#include <array>
#include <map>
#include <ranges>

#include "base/unicode.h"
#include "base/words.h"

namespace tallowin {

namespace {

/// Before the key, by DesktopShortcutModifier.
constexpr auto modifierTexts =
    std::to_array<std::string_view>({"", "ctrl+alt+", "ctrl+super+", "alt+super+", "ctrl+alt+shift+super+"});

class Presets {
  using Switches = Shortcut::Switches;

 public:
  Presets(const Settings& settings, std::vector<Shortcut>& list)
      : modifier_(settings.get(setting::desktopShortcutModifier)),
        movesWindows_(settings.get(setting::moveWindowShortcuts)),
        list_(list) {}

  void addOverview(OverlayHotKeyPreset preset) {
    constexpr auto keys =
        std::to_array<std::string_view>({"alt+tab", "ctrl+alt+space", "alt+`", "alt+super+space", "f13"});
    constexpr Keystroke f13{105, 0};  // HIToolbox/Events.h, kVK_F13, which keystrokes are not written with
    const std::string text(keys.at(static_cast<std::size_t>(preset)));
    add({text, preset == OverlayHotKeyPreset::f13 ? f13 : keyCombination(text), "tallowin://overview", "Overview"});
  }

  void addDesktops() {
    for (int number = 1; number <= 10; ++number) {
      const auto text = std::to_string(number);
      const auto key = std::to_string(number % 10);
      addPlain(key, "tallowin://switch/" + text, "Desktop " + text, Switches::byNumber);
      addMove(key, "tallowin://move-window/" + text, "Move Window to Desktop " + text);
    }
  }

  void addSteps(bool hasGrid) {
    addPlain("left", "tallowin://previous", "Previous Space", Switches::byStep);
    addPlain("right", "tallowin://next", "Next Space", Switches::byStep);
    addMove("left", "tallowin://move-window/previous", "Move Window to Previous Space");
    addMove("right", "tallowin://move-window/next", "Move Window to Next Space");
    if (hasGrid) {
      addPlain("up", "tallowin://up", "Space Above", Switches::byStep);
      addPlain("down", "tallowin://down", "Space Below", Switches::byStep);
    }
  }

  void addMarks() {
    addPlain("m", "jump", "Jump to Mark");
    addShifted("m", "mark", "Set Mark");
  }

 private:
  void add(Shortcut shortcut) {
    if (std::ranges::find(list_, shortcut.keystroke, &Shortcut::keystroke) == list_.end()) {
      list_.push_back(std::move(shortcut));
    }
  }

  void addPlain(const std::string& key, const std::string& action, const std::string& name,
                Switches switches = Switches::no) {
    if (modifier_ != DesktopShortcutModifier::off) {
      const auto keys = std::string(modifierTexts.at(static_cast<std::size_t>(modifier_))) + key;
      add({keys, keyCombination(keys), action, name, switches});
    }
  }

  /// With Shift, which the combination "hyper" holds already.
  void addShifted(const std::string& key, const std::string& action, const std::string& name) {
    if (modifier_ != DesktopShortcutModifier::hyper) {
      addPlain("shift+" + key, action, name);
    }
  }

  void addMove(const std::string& key, const std::string& action, const std::string& name) {
    if (movesWindows_) {
      addShifted(key, action, name);
    }
  }

  const DesktopShortcutModifier modifier_;
  const bool movesWindows_;
  std::vector<Shortcut>& list_;
};

}  // namespace

std::optional<Keystroke> keyCombination(std::string_view text) {
  std::vector<std::string> parts;
  for (const auto part : std::views::split(lowerCased(text), '+')) {
    parts.emplace_back(trimmed({part.begin(), part.end()}));
  }
  std::ranges::replace(parts, "super", "cmd");
  return Keystroke::parse(joined(parts, "+"));
}

std::vector<Shortcut> shortcutsOf(const Settings& settings, bool hasOverview) {
  std::vector<Shortcut> shortcuts;
  for (const auto& [keys, action] : settings.get(setting::shortcuts)) {
    shortcuts.push_back({keys, keyCombination(keys), action, keys});
  }
  Presets presets(settings, shortcuts);
  if (hasOverview) {
    presets.addOverview(settings.get(setting::overlayHotKey));
  }
  presets.addDesktops();
  if (settings.get(setting::navigationShortcuts)) {
    presets.addSteps(settings.get(setting::gridColumns) > 0);
  }
  presets.addMarks();
  return shortcuts;
}

}  // namespace tallowin
