#include "windows/window_layout.h"

#include <algorithm>
#include <map>
#include <string_view>

#include "base/date_text.h"
#include "base/record_reader.h"
#include "windows/frame_json.h"

namespace tallowin {

namespace {

PropertyList entryToJson(const WindowLayout::Entry& entry) {
  return {{"bundleID", entry.bundleID},
          {"title", entry.title},
          {"frame", toJson(entry.frame)},
          {"spaceUUID", entry.spaceUUID},
          {"displayID", entry.displayID}};
}

std::optional<WindowLayout::Entry> entryFromJson(const PropertyList& json) {
  RecordReader reader(json);
  auto bundleID = reader.text("bundleID");
  auto title = reader.text("title");
  const auto* const frameJson = reader.member("frame");
  const auto frame = frameJson != nullptr ? frameFromJson(*frameJson) : std::nullopt;
  auto spaceUUID = reader.text("spaceUUID");
  auto displayID = reader.text("displayID");
  if (!reader.good() || !bundleID || !frame || !spaceUUID) {
    return std::nullopt;
  }
  return WindowLayout::Entry{*std::move(bundleID), std::move(title).value_or(""), *frame, *std::move(spaceUUID),
                             std::move(displayID).value_or("")};
}

std::optional<std::vector<WindowLayout::Entry>> entriesFromJson(const PropertyList& json) {
  if (!json.is_array()) {
    return std::nullopt;
  }
  std::vector<WindowLayout::Entry> entries;
  entries.reserve(json.size());
  for (const auto& element : json) {
    auto entry = entryFromJson(element);
    if (!entry) {
      return std::nullopt;
    }
    entries.push_back(*std::move(entry));
  }
  return entries;
}

}  // namespace

PropertyList toJson(const WindowLayout& layout) {
  auto entries = PropertyList::array();
  for (const auto& entry : layout.entries) {
    entries.push_back(entryToJson(entry));
  }
  return {{"name", layout.name},
          {"savedAt", iso8601(layout.savedAt)},
          {"displaySetup", layout.displaySetup},
          {"entries", std::move(entries)}};
}

std::optional<WindowLayout> layoutFromJson(const PropertyList& json) {
  RecordReader reader(json);
  auto name = reader.text("name");
  const auto savedAt = dateFromISO8601(reader.text("savedAt").value_or(""));
  auto displaySetup = reader.text("displaySetup");
  const auto* const entriesJson = reader.member("entries");
  auto entries = entriesJson != nullptr ? entriesFromJson(*entriesJson) : std::vector<WindowLayout::Entry>();
  if (!reader.good() || !name || !savedAt || !displaySetup || !entries) {
    return std::nullopt;
  }
  return WindowLayout{*std::move(name), *savedAt, *std::move(displaySetup), *std::move(entries)};
}

std::vector<LayoutMatch> matchLayout(const std::vector<WindowInfo>& windows,
                                     const std::vector<WindowLayout::Entry>& entries) {
  std::map<std::string_view, std::vector<std::size_t>> remaining;  // by application, so that huge layouts cost little
  for (std::size_t i = 0; i < entries.size(); ++i) {
    remaining[entries[i].bundleID].push_back(i);
  }
  std::vector<LayoutMatch> matches;
  for (std::size_t i = 0; i < windows.size(); ++i) {
    const auto& window = windows[i];
    const auto found = window.bundleID ? remaining.find(*window.bundleID) : remaining.end();
    if (found == remaining.end() || found->second.empty()) {
      continue;
    }
    auto& candidates = found->second;
    const auto sameTitle = std::ranges::find_if(
        candidates, [&](std::size_t entry) { return !window.title.empty() && entries[entry].title == window.title; });
    const auto taken = sameTitle != candidates.end() ? sameTitle : candidates.begin();
    matches.push_back({i, *taken});
    candidates.erase(taken);
  }
  return matches;
}

}  // namespace tallowin
