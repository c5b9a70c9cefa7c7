#include "windows/saved_space.h"

#include "base/date_text.h"
#include "base/record_reader.h"
#include "windows/frame_json.h"

namespace tallowin {

namespace {

using Frames = std::map<std::string, std::vector<CGRect>>;

constexpr auto withoutTabsKey = "browsersWithoutTabs";

PropertyList framesToJson(const Frames& frames) {
  auto json = PropertyList::object();
  for (const auto& [bundleID, windows] : frames) {
    auto& list = json[bundleID] = PropertyList::array();
    for (const auto& frame : windows) {
      list.push_back(toJson(frame));
    }
  }
  return json;
}

std::optional<Frames> framesFromJson(const PropertyList& json) {
  if (!json.is_object()) {
    return std::nullopt;
  }
  Frames frames;
  for (const auto& [bundleID, list] : json.items()) {
    if (!list.is_array()) {
      return std::nullopt;
    }
    auto& windows = frames[bundleID];
    for (const auto& element : list) {
      const auto frame = frameFromJson(element);
      if (!frame) {
        return std::nullopt;
      }
      windows.push_back(*frame);
    }
  }
  return frames;
}

}  // namespace

PropertyList toJson(const SavedSpace& space) {
  PropertyList json = {{"id", space.id},     {"name", space.name}, {"savedAt", iso8601(space.savedAt)},
                       {"apps", space.apps}, {"urls", space.urls}, {"frames", framesToJson(space.frames)}};
  if (!space.browsersWithoutTabs.empty()) {
    json[withoutTabsKey] = space.browsersWithoutTabs;
  }
  return json;
}

std::optional<SavedSpace> savedSpaceFromJson(const PropertyList& json) {
  RecordReader reader(json);
  auto id = reader.text("id");
  auto name = reader.text("name");
  const auto savedAt = dateFromISO8601(reader.text("savedAt").value_or(""));
  auto apps = reader.textList("apps");
  auto urls = reader.textList("urls");
  const auto* const framesJson = reader.member("frames");
  auto frames = framesJson != nullptr ? framesFromJson(*framesJson) : Frames();
  auto withoutTabs = reader.textList(withoutTabsKey);
  if (!reader.good() || !id || !name || !savedAt || !frames) {
    return std::nullopt;
  }
  return SavedSpace{*std::move(id),     *std::move(name),      *savedAt, std::move(apps), std::move(urls),
                    *std::move(frames), std::move(withoutTabs)};
}

std::optional<std::vector<SavedSpace>> savedSpacesFromJson(const PropertyList& json) {
  if (!json.is_array()) {
    return std::nullopt;
  }
  std::vector<SavedSpace> spaces;
  for (const auto& element : json) {
    auto space = savedSpaceFromJson(element);
    if (!space) {
      return std::nullopt;
    }
    spaces.push_back(*std::move(space));
  }
  return spaces;
}

}  // namespace tallowin
