#include "windows/saved_spaces.h"

#include <algorithm>

#include "base/json_text.h"
#include "base/unicode.h"
#include "windows/application_opening.h"

namespace tallowin {

namespace {

constexpr auto savedSpacesCategory = "SavedSpaces";
constexpr auto closingPatience = std::chrono::milliseconds(300);

constexpr auto symbol = "archivebox";

std::string_view description(SavedSpaces::Failure failure) {
  return failure == SavedSpaces::Failure::noWindows ? "This Space has no windows to save"
                                                    : "This Space could not be saved";
}

}  // namespace

SavedSpaces::SavedSpaces(Services services, BrowserTabsReader browserTabs, RandomBits random)
    : services_(services),
      browserTabs_(std::move(browserTabs)),
      random_(std::move(random)),
      file_(services.storage, services.paths.supportDirectory() / "saved-spaces.json", savedSpacesCategory) {}

std::expected<SavedSpace, SavedSpaces::Failure> SavedSpaces::save(const Space& space) {
  const auto windows = services_.contents.windows(space.managedID);
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
  saved.id = randomUUID(random_);
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
    return json && !savedSpacesFromJson(*json) ? std::unexpected("a record has the wrong form") : std::move(json);
  };
  return file_.read(parse).value_or(PropertyList::array());
}

/// The user is told of a failure, and that nothing was closed; so the record does not come later either.
bool SavedSpaces::append(const SavedSpace& space) {
  auto all = records();
  all.push_back(toJson(space));
  const bool written = file_.write(prettyJSON(all)).has_value();
  if (!written) {
    file_.discardUnsaved();
  }
  return written;
}

void SavedSpaces::closeWindows(const Space& space) const {
  for (const auto& window : services_.contents.windows(space.managedID)) {
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
  return savedSpacesFromJson(records()).value_or(std::vector<SavedSpace>());
}

std::optional<SavedSpace> SavedSpaces::named(std::string_view name) {
  auto spaces = list();
  std::ranges::reverse(spaces);
  const auto found =
      std::ranges::find_if(spaces, [&](const SavedSpace& space) { return equalIgnoringCase(space.name, name); });
  return found != spaces.end() ? std::optional(*found) : std::nullopt;
}

Outcome SavedSpaceCommands::saveAndClose(const Space& space) {
  const auto saved = savedSpaces_.save(space);
  if (!saved) {
    const auto message = description(saved.error());
    toasts_.show({std::string(message), std::nullopt, true});
    return Outcome::refused(message);
  }
  const auto apps = std::to_string(saved->apps.size());
  toasts_.show({"Saved " + saved->name + " with " + apps + " apps and closed its windows", symbol});
  savedSpaces_.closeWindows(space);
  return Outcome::done();
}

void SavedSpaceCommands::reopen(const SavedSpace& space) {
  savedSpaces_.restore(space);
  toasts_.show({"Reopening " + space.name, symbol});
}

}  // namespace tallowin
