#include "triggers/shortcut_manager.h"

#include <algorithm>
#include <array>
#include <ranges>
#include <utility>

#include "base/json_text.h"
#include "base/unicode.h"
#include "base/words.h"

namespace tallowin {

namespace {

/// After a change of the shortcuts, what is taken is said: at a start the window manager and the panels take theirs.
constexpr Duration tellingDelay = std::chrono::seconds(1);

/// A window manager that switches desktops by Ctrl+Alt and a key, as it comes: by an arrow, and some by a digit.
struct SwitchingWindowManager {
  std::string_view name;
  bool byNumber = false;
};

constexpr SwitchingWindowManager switchingWindowManagers[] = {{"openbox"}, {"xfwm4"}, {"metacity"}, {"icewm", true}};

/// What the running window manager has keys for itself. Its name is asked for when it first matters, as that is slow.
class WindowManagersKeys {
 public:
  explicit WindowManagersKeys(DesktopFacts& facts) : facts_(facts) {}

  [[nodiscard]] bool have(const Shortcut& shortcut) {
    if (shortcut.switches == Shortcut::Switches::no || !shortcut.keys.starts_with("ctrl+alt+")) {
      return false;
    }
    if (!name_) {
      const auto manager = facts_.windowManager();
      name_ = manager ? lowerCased(manager->name) : "";
    }
    return std::ranges::any_of(switchingWindowManagers, [&](const SwitchingWindowManager& known) {
      return name_->starts_with(known.name) && (known.byNumber || shortcut.switches == Shortcut::Switches::byStep);
    });
  }

 private:
  DesktopFacts& facts_;
  std::optional<std::string> name_;  ///< in lower case, once known; empty for none
};

PropertyList recordsOf(const std::vector<ShortcutManager::Row>& rows) {
  auto records = PropertyList::array();
  for (const auto& [shortcut, state] : rows) {
    records.push_back(
        {{"keys", shortcut.keys}, {"name", shortcut.name}, {"action", shortcut.action}, {"state", nameOf(state)}});
  }
  return records;
}

std::string tableOf(const std::vector<ShortcutManager::Row>& rows) {
  TextTable table({{}, {}, {}});
  for (const auto& [shortcut, state] : rows) {
    table.add(
        {shortcut.keys, shortcut.name == shortcut.keys ? shortcut.action : shortcut.name, std::string(nameOf(state))});
  }
  return table.text();
}

}  // namespace

std::string_view nameOf(ShortcutState state) {
  constexpr auto names =
      std::to_array<std::string_view>({"works", "taken by another program", "done by your window manager",
                                       "not on this keyboard", "not a key combination"});
  return names.at(static_cast<std::size_t>(state));
}

void ShortcutManager::refresh() {
  auto wanted = shortcutsOf(services_.settings, hasOverview_);
  if (std::ranges::equal(wanted, registered_, {}, {}, &Registered::shortcut)) {
    return;
  }
  registered_.clear();
  for (auto& shortcut : wanted) {
    const auto keystroke = shortcut.keystroke;
    auto pressed = [this, action = shortcut.action] { onPressed(action); };
    registered_.push_back(
        {std::move(shortcut),
         keystroke ? services_.globalHotKeys.registerHotKey(keystroke->keyCode, keystroke->flags, std::move(pressed))
                   : nullptr});
  }
  telling_ = services_.mainQueue.after(tellingDelay, [this] { tellOfTaken(); });
}

std::vector<ShortcutManager::Row> ShortcutManager::rows() {
  services_.globalHotKeys.retry();
  WindowManagersKeys windowManagers(services_.desktopFacts);
  std::vector<Row> rows;
  for (const auto& [shortcut, hotKey] : registered_) {
    auto state = ShortcutState::notACombination;
    if (hotKey != nullptr) {
      switch (hotKey->state()) {
        case HotKeyState::works:
          state = ShortcutState::works;
          break;
        case HotKeyState::taken:
          state = windowManagers.have(shortcut) ? ShortcutState::doneByWindowManager : ShortcutState::taken;
          break;
        case HotKeyState::missingKey:
          state = ShortcutState::missingKey;
          break;
      }
    }
    rows.push_back({shortcut, state});
  }
  return rows;
}

std::vector<std::string> ShortcutManager::failures() {
  std::vector<std::string> names;
  for (const auto& row : rows()) {
    if (row.state == ShortcutState::taken) {
      names.push_back(row.shortcut.name);
    }
  }
  return names;
}

void ShortcutManager::tellOfTaken() {
  auto told = services_.settings.get(setting::toldShortcuts);
  WindowManagersKeys windowManagers(services_.desktopFacts);
  std::vector<std::string> taken;
  bool isNews = false;
  for (const auto& [shortcut, hotKey] : registered_) {
    const bool isTold = std::ranges::find(told, shortcut.name) != told.end();
    if (hotKey == nullptr || isTold || hotKey->state() != HotKeyState::taken) {
      continue;
    }
    isNews = true;
    told.push_back(shortcut.name);
    if (!windowManagers.have(shortcut)) {
      taken.push_back(shortcut.name);
    }
  }
  if (!isNews) {
    return;
  }
  services_.settings.set(setting::toldShortcuts, told);
  const bool offersAnother = !taken.empty() && taken.front() == "Overview" &&
                             services_.settings.get(setting::overlayHotKey) == OverlayHotKeyPreset::optionTab;
  if (offersAnother) {
    taken.erase(taken.begin());
    offerAnother();
  }
  if (!taken.empty()) {
    services_.toasts.show({"Shortcuts taken by other apps: " + joined(taken, ", "), "keyboard"});
  }
}

void ShortcutManager::offerAnother() {
  services_.alerts.show({"Alt+Tab belongs to another program",
                         "Ctrl+Alt+Space can open the overview instead. The settings have more to choose from.",
                         {"Use Ctrl+Alt+Space", "Keep Alt+Tab"}},
                        lifetime_.bound([this](std::optional<std::size_t> button) {
                          if (button == 0) {
                            services_.settings.set(setting::overlayHotKey, OverlayHotKeyPreset::controlOptionSpace);
                          }
                        }));
}

void addShortcutRequests(RequestTable& table, ShortcutManager& shortcuts) {
  table[RequestKind::shortcuts] = [&shortcuts](const RequestJob& job) {
    const auto rows = shortcuts.rows();
    job.print(job.words.json() ? prettyJSON(recordsOf(rows)) : tableOf(rows));
  };
}

}  // namespace tallowin
