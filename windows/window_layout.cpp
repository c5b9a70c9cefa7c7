#include "windows/window_layout.h"

#include <algorithm>
#include <functional>

#include "base/date_text.h"
#include "base/fnv1a.h"
#include "base/json_text.h"
#include "base/record_reader.h"
#include "base/unicode.h"
#include "windows/window_info.h"

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

constexpr std::size_t longest = 120;
constexpr std::size_t keptCharacters = 60;

template <typename Hash>
std::string fileName(std::string_view name, std::string_view displaySetup, Hash hash) {
  auto base = asFileName(std::string(name) + "--" + std::string(displaySetup));
  if (firstCharacters(base, longest).size() < base.size()) {
    base = std::string(firstCharacters(base, keptCharacters)) + std::to_string(hash(base));
  }
  return base + ".json";
}

std::expected<WindowLayout, std::string> parse(std::string_view text) {
  const auto json = parseJSON(text);
  auto layout = json ? layoutFromJson(*json) : std::nullopt;
  return layout ? std::expected<WindowLayout, std::string>(*std::move(layout))
                : std::unexpected(json ? "the record has the wrong form" : json.error());
}

}  // namespace

PropertyList toJson(const WindowLayout& layout) {
  return {{"name", layout.name},
          {"savedAt", iso8601(layout.savedAt)},
          {"displaySetup", layout.displaySetup},
          {"entries", listToJson(layout.entries, entryToJson)}};
}

std::optional<WindowLayout> layoutFromJson(const PropertyList& json) {
  RecordReader reader(json);
  auto name = reader.text("name");
  const auto savedAt = dateFromISO8601(reader.text("savedAt").value_or(""));
  auto displaySetup = reader.text("displaySetup");
  const auto* const entriesJson = reader.member("entries");
  auto entries =
      entriesJson != nullptr ? listFromJson(*entriesJson, entryFromJson) : std::vector<WindowLayout::Entry>();
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

std::string layoutFileName(std::string_view name, std::string_view displaySetup) {
  return fileName(name, displaySetup, fnv1a);
}

std::string earlierLayoutFileName(std::string_view name, std::string_view displaySetup) {
  return fileName(name, displaySetup, std::hash<std::string>());
}

RecordFile& LayoutFiles::file(std::string_view name, std::string_view displaySetup) {
  const auto folder = paths_.supportDirectory() / "Layouts";
  const auto fileName = layoutFileName(name, displaySetup);
  const auto [file, isNew] = files_.try_emplace(fileName, storage_, folder / fileName, "LayoutManager");
  if (isNew) {
    file->second.takeOver(folder / earlierLayoutFileName(name, displaySetup));
  }
  return file->second;
}

void LayoutFiles::write(const WindowLayout& layout, std::string_view name) {
  auto& replaced = file(name, layout.displaySetup);
  replaced.read(parse);                                           // what is not understood is kept aside
  static_cast<void>(replaced.write(prettyJSON(toJson(layout))));  // who must know asks the storage
}

std::optional<WindowLayout> LayoutFiles::read(std::string_view name, std::string_view displaySetup) {
  return file(name, displaySetup).read(parse);
}

}  // namespace tallowin
