#include "windows/saved_spaces.h"

#include <algorithm>

#include "base/json_text.h"
#include "base/keep_aside.h"
#include "base/unicode.h"
#include "windows/application_opening.h"

namespace tallowin {

namespace {

constexpr auto category = "SavedSpaces";
constexpr unsigned privateFile = 0600;
constexpr auto closingTimeout = std::chrono::milliseconds(300);

}  // namespace

SavedSpaces::SavedSpaces(Services services, BrowserTabsReader browserTabs, RandomBits random)
    : services_(services),
      ax_(services.accessibility, services.windowServer),
      browserTabs_(std::move(browserTabs)),
      random_(std::move(random)) {}

std::filesystem::path SavedSpaces::file() const {
  return services_.paths.supportDirectory() / "saved-spaces.json";
}

std::expected<SavedSpace, SavedSpaces::Failure> SavedSpaces::saveAndClose(const Space& space) {
  const auto windows = services_.contents.windows(space.managedID);
  if (windows.empty()) {
    return std::unexpected(Failure::noWindows);
  }
  auto saved = record(space, windows);
  if (!append(saved)) {
    return std::unexpected(Failure::notSaved);
  }
  close(windows);
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

/// The file's records as they stand, with what a newer version wrote into them. A file that cannot be understood is
/// kept aside, and there are none then; one that cannot be read, or not be kept aside, must not be replaced.
std::expected<PropertyList, FileError> SavedSpaces::recordsToKeep() {
  const auto isUnderstood = [](const PropertyList& json) { return savedSpacesFromJson(json).has_value(); };
  auto records = contentToReplace({services_.files, services_.clock, services_.log}, category, file(), isUnderstood);
  if (!records) {
    return std::unexpected(records.error());
  }
  return std::move(*records).value_or(PropertyList::array());
}

bool SavedSpaces::append(const SavedSpace& space) {
  auto records = recordsToKeep();
  std::expected<void, FileError> written;
  if (records) {
    records->push_back(toJson(space));
    written = services_.files.writeAtomically(file(), prettyJSON(*records), privateFile);
  } else {
    written = std::unexpected(records.error());
  }
  if (!written) {
    services_.log.error(category, "cannot write " + file().string() + ": " + written.error().description);
  }
  return written.has_value();
}

void SavedSpaces::close(const std::vector<WindowInfo>& windows) const {
  for (const auto& window : windows) {
    if (const auto element = ax_.element(window.id, window.pid, closingTimeout)) {
      ax_.close(element);
    }
  }
}

void SavedSpaces::restore(const SavedSpace& space) {
  for (const auto& bundleID : space.apps) {
    if (!opensByTabs(space, bundleID)) {
      openApplication(bundleID, services_.workspace, services_.log, category);
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
  const auto text = services_.files.read(file());
  const auto json = text ? parseJSON(*text) : std::unexpected(text.error().description);
  auto spaces = json ? savedSpacesFromJson(*json) : std::nullopt;
  if (!spaces && (text || !text.error().notFound)) {
    services_.log.error(
        category, "cannot read " + file().string() + ": " + (json ? "a record has the wrong form" : json.error()));
  }
  return std::move(spaces).value_or(std::vector<SavedSpace>());
}

std::optional<SavedSpace> SavedSpaces::named(std::string_view name) {
  auto spaces = list();
  std::ranges::reverse(spaces);
  const auto found =
      std::ranges::find_if(spaces, [&](const SavedSpace& space) { return equalIgnoringCase(space.name, name); });
  return found != spaces.end() ? std::optional(*found) : std::nullopt;
}

}  // namespace tallowin
