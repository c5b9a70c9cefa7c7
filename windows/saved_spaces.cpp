#include "windows/saved_spaces.h"

#include <algorithm>
#include <iterator>

#include "base/date_text.h"
#include "base/json_text.h"
#include "base/property_list_reading.h"
#include "base/unicode.h"
#include "base/words.h"
#include "windows/conveniences.h"
#include "windows/window_layout.h"

namespace tallowin {

namespace {

using Frames = std::map<std::string, std::vector<CGRect>>;

constexpr auto withoutTabsKey = "browsersWithoutTabs";

PropertyList framesToJson(const Frames& frames) {
  auto json = PropertyList::object();
  for (const auto& [bundleID, windows] : frames) {
    json[bundleID] = listToJson(windows, [](const CGRect& frame) { return toJson(frame); });
  }
  return json;
}

std::optional<Frames> framesFromJson(const PropertyList& json) {
  Frames frames;
  for (const auto& [bundleID, list] : json.items()) {
    auto windows = json.is_object() ? listFromJson(list, frameFromJson) : std::nullopt;
    if (!windows) {
      return std::nullopt;
    }
    frames.emplace(bundleID, *std::move(windows));
  }
  return json.is_object() ? std::optional(frames) : std::nullopt;
}

constexpr std::string_view browsers[] = {"com.apple.Safari",      "com.google.Chrome",          "com.brave.Browser",
                                         "com.microsoft.edgemac", "company.thebrowser.Browser", "com.vivaldi.Vivaldi"};

/// As a string literal of AppleScript. Names are others' to choose: a quotation mark in one must not end the literal.
std::string scriptLiteral(std::string_view name) {
  std::string literal = "\"";
  for (const char c : name) {
    if (c == '"' || c == '\\') {
      literal += '\\';
    }
    literal += c;
  }
  return literal + '"';
}

std::optional<std::string> runningName(Workspace& workspace, std::string_view bundleIdentifier) {
  for (const auto& application : workspace.runningApplicationsWithBundleIdentifier(bundleIdentifier)) {
    if (application.localizedName) {
      return application.localizedName;
    }
  }
  return std::nullopt;
}

constexpr auto savedSpacesCategory = "SavedSpaces";
constexpr auto closingPatience = std::chrono::milliseconds(300);

constexpr auto symbol = "archivebox";

std::string_view description(SavedSpaces::Failure failure) {
  return failure == SavedSpaces::Failure::noWindows ? "This Space has no windows to save"
                                                    : "This Space could not be saved";
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

bool BrowserTabs::isBrowser(std::string_view bundleIdentifier) {
  return std::ranges::find(browsers, bundleIdentifier) != std::end(browsers);
}

std::vector<std::string> BrowserTabs::urls(std::string_view bundleIdentifier) const {
  const auto name = isBrowser(bundleIdentifier) ? runningName(workspace_, bundleIdentifier) : std::nullopt;
  return name ? appleScript_
                    .executeAndReturnError("tell application " + scriptLiteral(*name) +
                                           " to get URL of every tab of front window")
                    .value_or(std::vector<std::string>())
              : std::vector<std::string>();
}

SavedSpaces::SavedSpaces(const ProgramServices& services, const SpaceContents& contents)
    : services_(services),
      contents_(contents),
      browserTabs_(services.workspace, services.appleScript),
      file_(services.storage, services.paths.supportDirectory() / "saved-spaces.json", savedSpacesCategory) {}

std::expected<SavedSpace, SavedSpaces::Failure> SavedSpaces::save(const Space& space) {
  const auto windows = contents_.windows(space.managedID);
  if (windows.empty()) {
    return std::unexpected(Failure::noWindows);
  }
  auto saved = record(space, windows);
  if (!append(saved)) {
    return std::unexpected(Failure::notSaved);
  }
  return saved;
}

SavedSpace SavedSpaces::record(const Space& space, const std::vector<WindowInfo>& windows) const {
  SavedSpace saved;
  saved.id = randomUUID([&] { return services_.system.randomBits(); });
  saved.name = services_.store.displayName(space);
  saved.savedAt = services_.clock.now();
  for (const auto& window : windows) {
    if (window.bundleID) {
      auto& frames = saved.frames[*window.bundleID];
      if (frames.empty()) {
        saved.apps.push_back(*window.bundleID);
      }
      frames.push_back(window.frame);
    }
  }
  addTabs(saved);
  return saved;
}

void SavedSpaces::addTabs(SavedSpace& space) const {
  for (const auto& bundleID : space.apps) {
    if (browserTabs_.isBrowser(bundleID)) {
      const auto urls = browserTabs_.urls(bundleID);
      space.urls.insert(space.urls.end(), urls.begin(), urls.end());
      if (urls.empty()) {
        space.browsersWithoutTabs.push_back(bundleID);
      }
    }
  }
}

/// The records as they stand, with what a newer version wrote into them; empty when they cannot be understood.
PropertyList SavedSpaces::records() {
  const auto parse = [](std::string_view text) -> std::expected<PropertyList, std::string> {
    auto json = parseJSON(text);
    return json && !listFromJson(*json, savedSpaceFromJson) ? std::unexpected("a record has the wrong form")
                                                            : std::move(json);
  };
  return file_.read(parse).value_or(PropertyList::array());
}

/// The user is told of a failure, and that nothing was closed; so the record does not come later either.
bool SavedSpaces::append(const SavedSpace& space) {
  auto all = records();
  all.push_back(toJson(space));
  const bool written = file_.write([text = prettyJSON(all)] { return [text] { return text; }; }).has_value();
  if (!written) {
    file_.discardUnsaved();
  }
  return written;
}

void SavedSpaces::closeWindows(const Space& space) const {
  for (const auto& window : contents_.windows(space.managedID)) {
    services_.windows.close({window.id, window.pid}, closingPatience);
  }
}

void SavedSpaces::restore(const SavedSpace& space) {
  for (const auto& bundleID : space.apps) {
    if (!opensByTabs(space, bundleID)) {
      OpenConfiguration configuration;
      configuration.opensNewWindow = true;
      openApplication(bundleID, services_.workspace, services_.log, savedSpacesCategory, configuration);
    }
  }
  for (const auto& url : space.urls) {
    services_.workspace.openURL(url);
  }
}

bool SavedSpaces::opensByTabs(const SavedSpace& space, const std::string& bundleID) const {
  return !space.urls.empty() && browserTabs_.isBrowser(bundleID) &&
         std::ranges::find(space.browsersWithoutTabs, bundleID) == space.browsersWithoutTabs.end();
}

std::vector<SavedSpace> SavedSpaces::list() {
  return listFromJson(records(), savedSpaceFromJson).value_or(std::vector<SavedSpace>());
}

std::optional<SavedSpace> SavedSpaces::named(std::string_view name) {
  auto spaces = list();
  std::ranges::reverse(spaces);
  const auto found =
      std::ranges::find_if(spaces, [&](const SavedSpace& space) { return equalIgnoringCase(space.name, name); });
  return found != spaces.end() ? std::optional(*found) : std::nullopt;
}

Outcome SavedSpaces::saveAndClose(const Space& space) {
  const auto saved = save(space);
  if (!saved) {
    const auto message = description(saved.error());
    services_.toasts.show({std::string(message), std::nullopt, true});
    return Outcome::refused(message);
  }
  const auto apps = std::to_string(saved->apps.size());
  services_.toasts.show({"Saved " + saved->name + " with " + apps + " apps and closed its windows", symbol});
  closeWindows(space);
  return Outcome::done();
}

void SavedSpaces::reopen(const SavedSpace& space) {
  restore(space);
  services_.toasts.show({"Reopening " + space.name, symbol});
}

}  // namespace tallowin
