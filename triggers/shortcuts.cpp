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

  void add(std::string keys, std::string action, std::string name, Switches switches = Switches::no) {
    const auto keystroke = keyCombination(keys);
    if (std::ranges::find(list_, keystroke, &Shortcut::keystroke) == list_.end()) {
      list_.push_back({std::move(keys), keystroke, std::move(action), std::move(name), switches});
    }
  }

 private:
  void addPlain(const std::string& key, const std::string& action, const std::string& name,
                Switches switches = Switches::no) {
    if (modifier_ != DesktopShortcutModifier::off) {
      add(std::string(modifierTexts.at(static_cast<std::size_t>(modifier_))) + key, action, name, switches);
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
  constexpr VirtualKeyCode f13 = 105;  // HIToolbox/Events.h, kVK_F13
  std::vector<std::string> parts;
  for (const auto part : std::views::split(lowerCased(text), '+')) {
    parts.emplace_back(trimmed({part.begin(), part.end()}));
  }
  std::ranges::replace(parts, "super", "cmd");
  const bool isF13 = !parts.empty() && parts.back() == "f13";
  if (isF13) {
    parts.back() = "f12";
  }
  auto keystroke = Keystroke::parse(joined(parts, "+"));
  if (keystroke && isF13) {
    keystroke->keyCode = f13;
  }
  return keystroke;
}

std::string_view keysOf(OverlayHotKeyPreset preset) {
  constexpr auto keys =
      std::to_array<std::string_view>({"alt+tab", "ctrl+alt+space", "alt+`", "alt+super+space", "f13"});
  return keys.at(static_cast<std::size_t>(preset));
}

std::vector<Shortcut> shortcutsOf(const Settings& settings, bool hasOverview) {
  std::vector<Shortcut> shortcuts;
  for (const auto& [keys, action] : settings.get(setting::shortcuts)) {
    shortcuts.push_back({keys, keyCombination(keys), action, keys});
  }
  Presets presets(settings, shortcuts);
  if (hasOverview) {
    presets.add(std::string(keysOf(settings.get(setting::overlayHotKey))), "tallowin://overview", "Overview");
  }
  presets.addDesktops();
  if (settings.get(setting::navigationShortcuts)) {
    presets.addSteps(settings.get(setting::gridColumns) > 0);
  }
  presets.addMarks();
  return shortcuts;
}

}  // namespace tallowin
