#include "presentation/model/menu.h"

#include <algorithm>
#include <utility>

namespace tallowin {

namespace {

using Kind = MenuEntry::Kind;
using Words = std::vector<std::string>;

MenuEntry action(std::string label, Words request) {
  MenuEntry entry;
  entry.label = std::move(label);
  entry.request = std::move(request);
  return entry;
}

MenuEntry heading(std::string label) {
  MenuEntry entry;
  entry.kind = Kind::heading;
  entry.label = std::move(label);
  return entry;
}

MenuEntry submenu(std::string label, Menu entries) {
  MenuEntry entry;
  entry.kind = Kind::submenu;
  entry.label = std::move(label);
  entry.entries = std::move(entries);
  return entry;
}

void addSeparator(Menu& menu) {
  if (!menu.empty() && menu.back().kind != Kind::separator) {
    menu.emplace_back().kind = Kind::separator;
  }
}

/// A submenu without entries is no use.
void addSubmenu(Menu& menu, std::string label, Menu entries) {
  if (!entries.empty()) {
    menu.push_back(submenu(std::move(label), std::move(entries)));
  }
}

/// What names the Space in a request: its number, as two Spaces may have one name.
std::string referenceTo(const SpaceRow& space) {
  return space.desktopNumber ? std::to_string(*space.desktopNumber) : space.name;
}

MenuEntry entryFor(const SpaceRow& space, const std::string& word) {
  auto entry = action((space.desktopNumber ? numberOf(space) + "  " : "") + space.name, {word, referenceTo(space)});
  entry.colorHex = space.colorHex;
  entry.symbol = space.symbol;
  return entry;
}

/// The Spaces in their order: first those without a group, then those of each group under its name.
Menu spaceEntries(const std::vector<SpaceRow>& spaces) {
  Menu menu;
  Words groups;
  const auto add = [&menu](const SpaceRow& space) {
    auto& entry = menu.emplace_back(entryFor(space, "switch"));
    entry.mark = MenuEntry::Mark::check;
    entry.isMarked = space.isActive;
  };
  const auto addGroup = [&](const std::optional<std::string>& group) {
    for (const auto& space : spaces) {
      if (space.group == group) {
        add(space);
      }
    }
  };
  addGroup(std::nullopt);
  for (const auto& space : spaces) {
    if (space.group && std::ranges::find(groups, *space.group) == groups.end()) {
      groups.push_back(*space.group);
      menu.push_back(heading(*space.group));
      addGroup(space.group);
    }
  }
  return menu;
}

Menu moveEntries(const std::vector<SpaceRow>& spaces) {
  Menu menu;
  for (const auto& space : spaces) {
    if (space.desktopNumber && !space.isActive) {
      menu.push_back(entryFor(space, "move-window"));
    }
  }
  return menu;
}

Menu entriesFor(const Words& names, const Words& words) {
  Menu menu;
  for (const auto& name : names) {
    menu.push_back(action(name, words));
    menu.back().request.push_back(name);
  }
  return menu;
}

Menu thisSpaceEntries(const MenuContent& content) {
  Menu menu;
  if (std::ranges::any_of(content.spaces, &SpaceRow::isActive)) {
    menu = {action("Rename…", {"tallowin://rename/current"}), action("Note…", {"ask-note", "current"}),
            action("Launch Its Apps Now", {"automation", "current", "run"})};
  }
  addSeparator(menu);
  if (content.canAdd) {
    menu.push_back(action("Add Desktop", {"add-desktop"}));
  }
  if (content.canRemove) {
    menu.push_back(action("Remove Desktop", {"remove-desktop", "current", "--ask"}));
  }
  if (!menu.empty() && menu.back().kind == Kind::separator) {
    menu.pop_back();
  }
  return menu;
}

Menu profileEntries(const MenuContent& content) {
  auto menu = entriesFor(content.profiles, {"profile", "use"});
  for (auto& entry : menu) {
    entry.mark = MenuEntry::Mark::radio;
    entry.isMarked = entry.label == content.activeProfile;
  }
  return menu;
}

Menu templateEntries(const MenuContent& content) {
  auto menu = entriesFor(content.templates, {"template", "apply"});
  addSeparator(menu);
  menu.push_back(action("Import…", {"template", "import"}));
  menu.back().asksForFile = true;
  return menu;
}

Menu earlierStateEntries(const MenuContent& content) {
  Menu menu;
  for (const auto& state : content.earlierStates) {
    menu.push_back(action(state, {"restore", std::to_string(menu.size() + 1)}));
  }
  return menu;
}

}  // namespace

Menu statusMenu(const MenuContent& content) {
  auto menu = spaceEntries(content.spaces);
  if (content.canGoBack) {
    menu.push_back(action("Back", {"back"}));
  }
  addSeparator(menu);
  addSubmenu(menu, "Move Window to", moveEntries(content.spaces));
  menu.push_back(action("Minimize All", {"minimize-all"}));
  if (content.canUndoMinimize) {
    menu.push_back(action("Undo Minimize", {"undo-minimize"}));
  }
  menu.push_back(action("Scratchpad", {"scratchpad"}));
  menu.push_back(action("Save and Close Space", {"save-space"}));
  addSubmenu(menu, "Reopen", entriesFor(content.savedSpaces, {"reopen"}));
  addSeparator(menu);
  addSubmenu(menu, "This Space", thisSpaceEntries(content));
  addSubmenu(menu, "Profile", profileEntries(content));
  addSubmenu(menu, "Template", templateEntries(content));
  addSubmenu(
      menu, "Window Layout",
      {action("Save", {"save-layout"}), action("Restore", {"restore-layout"}), action("Prepare to Unplug", {"eject"})});
  addSubmenu(menu, "Restore an Earlier State", earlierStateEntries(content));
  addSeparator(menu);
  menu.push_back(action("Quit", {"quit"}));
  return menu;
}

void visitMenu(const Menu& menu, const std::function<void(const MenuEntry&, std::size_t)>& visit) {
  for (const auto& entry : menu) {
    visit(entry, 0);
    visitMenu(entry.entries, [&visit](const MenuEntry& inner, std::size_t depth) { visit(inner, depth + 1); });
  }
}

const MenuEntry* entryAt(const Menu& menu, const std::vector<std::string>& path) {
  const MenuEntry* entry = nullptr;
  const Menu* level = &menu;
  for (const auto& label : path) {
    const auto found = std::ranges::find_if(*level, [&label](const MenuEntry& each) {
      return each.label == label && (each.kind == Kind::action || each.kind == Kind::submenu);
    });
    if (found == level->end()) {
      return nullptr;
    }
    entry = &*found;
    level = &entry->entries;
  }
  return entry != nullptr && entry->kind == Kind::action ? entry : nullptr;
}

}  // namespace tallowin
