#include "windows/window_layout.h"

#include <algorithm>
#include <functional>

#include "base/date_text.h"
#include "base/json_text.h"
#include "base/property_list_reading.h"
#include "base/unicode.h"
#include "base/words.h"
#include "core/display_lookup.h"

namespace tallowin {

namespace {

std::optional<std::pair<double, double>> pair(const PropertyList& json) {
  if (!json.is_array() || json.size() != 2) {
    return std::nullopt;
  }
  const auto first = property_list::real(json[0]);
  const auto second = property_list::real(json[1]);
  return first && second ? std::optional(std::pair(*first, *second)) : std::nullopt;
}

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

std::vector<Space> ordinarySpaces(const DisplaySpaces& display) {
  auto spaces = display.spaces;
  std::erase_if(spaces, &Space::isFullscreen);
  return spaces;
}

double areaOf(const CGRect& rect) {
  return rect.size.width * rect.size.height;
}

const Monitor& homeMonitor(const std::vector<Monitor>& monitors) {
  auto home = std::ranges::find_if(monitors, &Monitor::isBuiltIn);
  if (home == monitors.end()) {
    home = std::ranges::find_if(monitors, &Monitor::isPrimary);
  }
  return home != monitors.end() ? *home : monitors.front();
}

/// The monitor that shows most of a frame, `home` if no other one shows more of it than that; null when none shows any.
const Monitor* monitorOf(const CGRect& frame, const Monitor& home, const std::vector<Monitor>& monitors) {
  const auto shown = [&](const Monitor& monitor) { return areaOf(intersection(frame, monitor.bounds)); };
  const auto& most = *std::ranges::max_element(monitors, {}, shown);
  const auto& found = shown(most) > shown(home) ? most : home;
  return shown(found) > 0 ? &found : nullptr;
}

/// The frame at its place in another area, made smaller and moved as far as is needed to lie inside.
CGRect inside(const CGRect& area, const CGRect& frame, CGPoint placeInItsArea) {
  const CGSize size{std::min(frame.size.width, area.size.width), std::min(frame.size.height, area.size.height)};
  const auto fitted = [](double place, double room) { return std::clamp(place, 0.0, room); };
  return {{area.origin.x + fitted(placeInItsArea.x, area.size.width - size.width),
           area.origin.y + fitted(placeInItsArea.y, area.size.height - size.height)},
          size};
}

}  // namespace

PropertyList toJson(const CGRect& frame) {
  return PropertyList::array({PropertyList::array({frame.origin.x, frame.origin.y}),
                              PropertyList::array({frame.size.width, frame.size.height})});
}

std::optional<CGRect> frameFromJson(const PropertyList& json) {
  if (!json.is_array() || json.size() != 2) {
    return std::nullopt;
  }
  const auto origin = pair(json[0]);
  const auto size = pair(json[1]);
  return origin && size ? std::optional(CGRect{{origin->first, origin->second}, {size->first, size->second}})
                        : std::nullopt;
}

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
  replaced.read(parse);  // what is not understood is kept aside
  replaced.replace(prettyJSON(toJson(layout)));
}

std::optional<WindowLayout> LayoutFiles::read(std::string_view name, std::string_view displaySetup) {
  return file(name, displaySetup).read(parse);
}

std::string displaySetKey(const std::vector<std::string>& displays) {
  return joined(displays, "+");
}

std::vector<std::string> connectedDisplays(Displays& displays, const SpaceSnapshot& snapshot) {
  auto connected = displays.displaySetIdentifiers();
  if (connected.empty()) {
    std::ranges::transform(snapshot.displays, std::back_inserter(connected), &DisplaySpaces::id);
  }
  std::ranges::sort(connected);
  return connected;
}

std::optional<DisplaySpaces> homeDisplay(Displays& displays, const SpaceSnapshot& snapshot) {
  const auto builtin = std::ranges::find_if(snapshot.displays, [&](const DisplaySpaces& candidate) {
    const auto display = displayWithIdentifier(displays, candidate.id);
    return display != 0 && displays.CGDisplayIsBuiltin(display);
  });
  return builtin != snapshot.displays.end() ? std::optional(*builtin) : snapshot.menuBarDisplay();
}

std::vector<SpaceEjection> planEjection(const SpaceSnapshot& snapshot, const DisplaySpaces& home) {
  const auto homeSpaces = ordinarySpaces(home);
  std::vector<SpaceEjection> plan;
  for (const auto& display : snapshot.displays) {
    if (display.id == home.id || homeSpaces.empty()) {
      continue;
    }
    const auto spaces = ordinarySpaces(display);
    for (std::size_t i = 0; i < spaces.size(); ++i) {
      plan.push_back({spaces[i], homeSpaces[std::min(i, homeSpaces.size() - 1)]});
    }
  }
  return plan;
}

std::vector<WindowEjection> planEjection(const std::vector<WindowInfo>& windows, const std::vector<Monitor>& monitors) {
  std::vector<WindowEjection> plan;
  if (monitors.empty()) {
    return plan;
  }
  const auto& home = homeMonitor(monitors);
  for (const auto& window : windows) {
    const auto* const monitor = monitorOf(window.frame, home, monitors);
    if (monitor != nullptr && monitor != &home) {
      const auto& corner = monitor->workArea.origin;
      const CGPoint place{window.frame.origin.x - corner.x, window.frame.origin.y - corner.y};
      plan.push_back({window, inside(home.workArea, window.frame, place)});
    }
  }
  return plan;
}

}  // namespace tallowin
