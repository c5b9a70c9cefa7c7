#include "windows/window_texts.h"

#include "base/date_text.h"
#include "base/text_table.h"
#include "core/space_format.h"
#include "windows/frame_json.h"

namespace tallowin {

using enum TextTable::Alignment;

namespace {

std::string counted(std::size_t count, const char* noun) {
  return std::to_string(count) + " " + noun + (count == 1 ? "" : "s");
}

}  // namespace

std::string windowTable(const std::vector<WindowInfo>& windows, const SpaceSnapshot& snapshot,
                        const SpaceStore& store) {
  TextTable table({{right}, {left}, {left}, {left}});
  for (const auto& space : snapshot.allSpaces()) {
    for (const auto& window : windows) {
      if (window.spaceID == space.managedID) {
        table.add({desktopNumberText(space), store.displayName(space), window.appName, window.title});
      }
    }
  }
  return table.text();
}

PropertyList windowRecords(const std::vector<WindowInfo>& windows, const SpaceSnapshot& snapshot,
                           const SpaceStore& store) {
  auto records = PropertyList::array();
  for (const auto& window : windows) {
    PropertyList record = {{"id", window.id},       {"pid", window.pid},     {"bundleID", nullptr},
                           {"app", window.appName}, {"title", window.title}, {"frame", toJson(window.frame)},
                           {"space", nullptr},      {"number", nullptr},     {"spaceName", nullptr}};
    if (window.bundleID) {
      record["bundleID"] = *window.bundleID;
    }
    if (const auto space = snapshot.managed(window.spaceID)) {
      record["space"] = space->id;
      record["spaceName"] = store.displayName(*space);
      if (space->desktopNumber) {
        record["number"] = *space->desktopNumber;
      }
    }
    records.push_back(std::move(record));
  }
  return records;
}

std::string savedSpaceTable(const std::vector<SavedSpace>& spaces, const Clock& clock) {
  TextTable table({{left}, {left}, {right}, {right}});
  for (const auto& space : spaces) {
    table.add({localDateText(space.savedAt, clock), space.name, counted(space.apps.size(), "app"),
               counted(space.urls.size(), "tab")});
  }
  return table.text();
}

}  // namespace tallowin
