#include "app/shown_state.h"

#include <algorithm>
#include <set>

#include "base/date_text.h"
#include "base/unicode.h"
#include "base/words.h"
#include "commands/cli/request_job.h"

namespace tallowin {

namespace {

/// Below the name: the first line of the note, else which desktop it is.
std::string hudLine(const Space& space, const ProgramServices& services) {
  const auto note = services.store.meta(space.id).note.value_or("");
  const auto firstLine = trimmed(std::string_view(note).substr(0, note.find('\n')));
  if (!firstLine.empty()) {
    return std::string(firstLine);
  }
  if (!space.desktopNumber) {
    return "";
  }
  const auto spaces = services.watcher.latest().allSpaces();
  const auto count = std::ranges::count_if(spaces, [](const Space& each) { return each.desktopNumber.has_value(); });
  return "Desktop " + std::to_string(*space.desktopNumber) + " of " + std::to_string(count);
}

/// Whether desktops can be added and removed here; where they are driven, that is found out by trying.
DesktopAbilities abilitiesOf(const ProgramServices& services) {
  return services.asked != nullptr ? services.asked->abilities() : DesktopAbilities{true, true, true};
}

/// The names, the last one first, none twice: a request means the latest of its name.
std::vector<std::string> latestFirst(std::vector<std::string> names) {
  std::ranges::reverse(names);
  std::set<std::string> seen;
  std::erase_if(names, [&seen](const std::string& name) { return !seen.insert(name).second; });
  return names;
}

}  // namespace

SpaceRow spaceRow(const Space& space, const SpaceSnapshot& snapshot, const SpaceStore& store) {
  const auto meta = store.meta(space.id);
  const auto active = snapshot.activeSpace();
  return {space.id,   store.displayName(space),         space.desktopNumber, store.symbol(space), meta.colorHex,
          meta.group, active && active->id == space.id, space.isActive};
}

std::vector<SpaceRow> spaceRows(const SpaceSnapshot& snapshot, const SpaceStore& store) {
  std::vector<SpaceRow> rows;
  for (const auto& space : snapshot.allSpaces()) {
    rows.push_back(spaceRow(space, snapshot, store));
  }
  return rows;
}

std::optional<HUD> hudFor(const Space& space, const ProgramServices& services) {
  const auto& settings = services.settings;
  if (!settings.get(setting::hudEnabled)) {
    return std::nullopt;
  }
  return HUD{space.id,
             services.store.displayName(space),
             services.store.symbol(space),
             services.store.meta(space.id).colorHex,
             space.desktopNumber,
             hudLine(space, services),
             settings.get(setting::hudSize),
             settings.get(setting::hudPosition),
             settings.get(setting::hudDuration)};
}

Menu menuNow(const ProgramServices& services, const SpaceHistory& history, WindowServices& windows,
             RecordServices& records) {
  const auto& snapshot = services.watcher.latest();
  const auto abilities = abilitiesOf(services);
  MenuContent content;
  content.spaces = spaceRows(snapshot, services.store);
  content.canGoBack = history.previous(snapshot).has_value();
  content.canUndoMinimize = windows.minimizer.canUndo();
  content.canAdd = abilities.addsSpaces;
  content.canRemove = abilities.removesSpaces;
  content.savedSpaces = latestFirst(namesOf(windows.savedSpaces.list()));
  content.profiles = records.profiles.names();
  if (auto active = services.settings.get(setting::activeProfile); !active.empty()) {
    content.activeProfile = std::move(active);
  }
  content.templates = namesOf(records.templates.list());
  for (const auto& copy : records.backups.list()) {
    content.earlierStates.push_back(localDateText(copy.keptAt, services.clock) + "  " + printable(copy.reason));
  }
  return statusMenu(content);
}

std::string menuText(const Menu& menu) {
  std::string text;
  visitMenu(menu, [&text](const MenuEntry& entry, std::size_t depth) {
    if (entry.kind == MenuEntry::Kind::separator) {
      return;
    }
    text.append(2 * depth, ' ').append(entry.isMarked ? "* " : "  ").append(printable(entry.label));
    if (!entry.request.empty()) {
      text.append("\t").append(printable(joined(entry.request, " ")));
    }
    text.append("\n");
  });
  return text;
}

StatusItemUpdates::StatusItemUpdates(const ProgramServices& services, SpaceChanges& changes)
    : services_(services), changes_(changes.observe([this] {
        if (shown_) {
          refresh();
        }
      })) {}

void StatusItemUpdates::refresh() {
  const auto& settings = services_.settings;
  auto item = statusItem(spaceRows(services_.watcher.latest(), services_.store),
                         {settings.get(setting::menuBarStyle), settings.get(setting::menuBarShowsIcon),
                          settings.get(setting::menuBarScrollSwitches)});
  if (item != shown_) {
    services_.presentation.showStatusItem(item);
    shown_ = std::move(item);
  }
}

}  // namespace tallowin
