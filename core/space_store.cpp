#include "core/space_store.h"

#include <algorithm>
#include <array>
#include <vector>

#include "base/json_text.h"
#include "base/unicode.h"

namespace tallowin {

namespace {

constexpr auto spaceStoreCategory = "SpaceStore";
constexpr auto saveDelay = std::chrono::milliseconds(300);
constexpr int iconSize = 128;
constexpr std::size_t recentNames = 20;
constexpr std::string_view fullscreenPrefix = "fs:";
constexpr std::string_view managedPrefix = "managed-";
constexpr unsigned privateFile = 0600;

/// What a desktop is called, and which symbol it shows, while the demonstration mode is on.
struct SampleSpace {
  std::string_view name;
  std::string_view symbol;
};

/// Desktop n takes entry (n - 1) modulo their number.
constexpr auto sampleSpaces = std::to_array<SampleSpace>({
    {"Mail", "envelope"},
    {"Code", "chevron.left.forwardslash.chevron.right"},
    {"Design", "paintbrush"},
    {"Research", "books.vertical"},
    {"Music", "music.note"},
    {"Home", "house"},
});

std::optional<std::string> unlessEmpty(const std::string& text) {
  return text.empty() ? std::nullopt : std::optional(text);
}

/// The sample that an ordinary desktop takes in the demonstration mode.
const SampleSpace* sample(const Space& space, const Settings& settings) {
  const bool applies = !space.isFullscreen && space.desktopNumber.value_or(0) >= 1 && settings.get(setting::demoMode);
  return applies ? &sampleSpaces.at(static_cast<std::size_t>(*space.desktopNumber - 1) % sampleSpaces.size()) : nullptr;
}

}  // namespace

SpaceStore::SpaceStore(Services services, Storage& storage, std::filesystem::path file)
    : services_(services), file_(storage, std::move(file), spaceStoreCategory, {.delay = saveDelay}) {
  const auto parse = [](std::string_view text) -> std::expected<SpaceMetas, std::string> {
    const auto json = parseJSON(text);
    auto metas = json ? metasFromJson(*json) : std::nullopt;
    return metas ? std::expected<SpaceMetas, std::string>(*std::move(metas))
                 : std::unexpected(json ? "a record has the wrong form" : json.error());
  };
  metas_ = file_.read(parse).value_or(SpaceMetas());
  static_cast<void>(file_.makeReplaceable());  // the next save tells what keeps it from that
}

SpaceMeta SpaceStore::meta(const std::string& id) const {
  const auto found = metas_.find(id);
  return found != metas_.end() ? found->second : SpaceMeta();
}

void SpaceStore::update(const std::string& id, const Change& change) {
  auto changed = meta(id);
  change(changed);
  willChange_.tell();
  put(id, changed);
  // The memory of full-screen applications follows every edit.
  if (const auto key = fullscreenKeyByID_.find(id); key != fullscreenKeyByID_.end()) {
    put(key->second, changed);
  }
  scheduleSave();
}

void SpaceStore::put(const std::string& key, const SpaceMeta& meta) {
  if (meta.isEmpty()) {
    metas_.erase(key);
  } else {
    metas_.insert_or_assign(key, meta);
  }
}

void SpaceStore::setName(const std::string& name, const std::string& id) {
  update(id, [&](SpaceMeta& meta) { meta.name = unlessEmpty(name); });
}

void SpaceStore::setSymbol(std::optional<std::string> symbol, const std::string& id) {
  update(id, [&](SpaceMeta& meta) { meta.symbol = std::move(symbol); });
}

void SpaceStore::setColor(std::optional<std::string> colorHex, const std::string& id) {
  update(id, [&](SpaceMeta& meta) { meta.colorHex = std::move(colorHex); });
}

void SpaceStore::setNote(const std::string& note, const std::string& id) {
  update(id, [&](SpaceMeta& meta) { meta.note = unlessEmpty(note); });
}

void SpaceStore::setGroup(const std::string& group, const std::string& id) {
  update(id, [&](SpaceMeta& meta) { meta.group = unlessEmpty(group); });
}

void SpaceStore::setAutomation(const SpaceAutomation& automation, const std::string& id) {
  update(id, [&](SpaceMeta& meta) {
    meta.automation = automation == SpaceAutomation() ? std::nullopt : std::optional(automation);
  });
}

std::expected<void, FileError> SpaceStore::setCustomIcon(const std::optional<std::filesystem::path>& image,
                                                         const std::string& id) {
  const auto icon = image ? iconFrom(*image) : std::nullopt;
  const auto iconFile = icon ? std::optional(id + ".png") : std::nullopt;
  if (icon) {
    if (auto written = services_.files.writeAtomically(iconPath(*iconFile), *icon, privateFile); !written) {
      return written;
    }
  }
  if (const auto old = meta(id).iconFile; old && old != iconFile) {
    removeIcon(*old);
  }
  iconCache_.erase(id);
  update(id, [&](SpaceMeta& meta) { meta.iconFile = iconFile; });
  return {};
}

/// The PNG of the icon; nothing for a file that is no picture.
std::optional<std::string> SpaceStore::iconFrom(const std::filesystem::path& image) const {
  const auto bytes = services_.files.read(image);
  const auto picture = bytes ? services_.images.decode(*bytes) : std::nullopt;
  const auto icon = picture ? services_.images.scaled(*picture, iconSize, iconSize) : std::nullopt;
  return icon ? std::optional(services_.images.encodePNG(*icon)) : std::nullopt;
}

void SpaceStore::removeIcon(const std::string& fileName) {
  if (const auto removed = services_.files.remove(iconPath(fileName)); !removed && !removed.error().notFound) {
    services_.log.error(spaceStoreCategory, "cannot remove an icon: " + removed.error().description);
  }
}

std::filesystem::path SpaceStore::iconPath(const std::string& fileName) const {
  // Ids and files come from outside, and must not lead out of the folder.
  return services_.paths.iconsDirectory() / asFileName(fileName);
}

std::optional<Image> SpaceStore::customIcon(const Space& space) {
  if (const auto cached = iconCache_.find(space.id); cached != iconCache_.end()) {
    return cached->second;
  }
  const auto iconFile = meta(space.id).iconFile;
  const auto bytes = iconFile ? services_.files.read(iconPath(*iconFile)) : std::unexpected(FileError());
  auto picture = bytes ? services_.images.decode(*bytes) : std::nullopt;
  if (picture) {
    iconCache_.emplace(space.id, *picture);
  }
  return picture;
}

void SpaceStore::replaceAll(SpaceMetas metas) {
  willChange_.tell();
  metas_ = std::move(metas);
  iconCache_.clear();
  scheduleSave();
}

void SpaceStore::remember(const std::string& name) {
  auto names = services_.settings.get(setting::recentSpaceNames);
  std::erase_if(names, [&](const std::string& old) { return equalIgnoringCase(old, name); });
  names.insert(names.begin(), name);
  names.resize(std::min(names.size(), recentNames));
  services_.settings.set(setting::recentSpaceNames, names);
}

std::optional<RunningApplication> SpaceStore::fullscreenOwner(const Space& space) const {
  return space.isFullscreen && space.fullscreenPID
             ? services_.workspace.runningApplicationWithProcessIdentifier(*space.fullscreenPID)
             : std::nullopt;
}

std::string SpaceStore::displayName(const Space& space) const {
  if (const auto* entry = sample(space, services_.settings)) {
    return std::string(entry->name);
  }
  if (const auto name = meta(space.id).name) {
    return *name;
  }
  if (space.isFullscreen) {
    const auto owner = fullscreenOwner(space);
    return owner && owner->localizedName ? *owner->localizedName : "Full Screen";
  }
  if (autoNameProvider && services_.settings.get(setting::autoNameSpaces)) {
    if (const auto name = autoNameProvider(space)) {
      return *name;
    }
  }
  return space.desktopNumber ? "Desktop " + std::to_string(*space.desktopNumber) : "Desktop";
}

bool SpaceStore::hasCustomName(const Space& space) const {
  return sample(space, services_.settings) != nullptr || meta(space.id).name.has_value();
}

std::string SpaceStore::symbol(const Space& space) const {
  if (const auto* entry = sample(space, services_.settings)) {
    return std::string(entry->symbol);
  }
  return meta(space.id).symbol.value_or(space.isFullscreen ? "macwindow" : "rectangle.on.rectangle");
}

void SpaceStore::prune(const std::set<std::string>& existing) {
  const auto isGone = [&existing](const SpaceMetas::value_type& entry) {
    const auto& key = entry.first;
    return !existing.contains(key) && !key.starts_with(managedPrefix) && !key.starts_with(fullscreenPrefix);
  };
  if (std::ranges::any_of(metas_, isGone)) {
    willChange_.tell();
    std::erase_if(metas_, isGone);
    scheduleSave();
  }
}

void SpaceStore::noteFullscreenKeys(const std::vector<Space>& spaces) {
  fullscreenKeyByID_.clear();
  for (const auto& space : spaces) {
    const auto owner = fullscreenOwner(space);
    if (owner && owner->bundleIdentifier) {
      fullscreenKeyByID_[space.id] = std::string(fullscreenPrefix) + *owner->bundleIdentifier;
    }
  }
}

void SpaceStore::adoptFullscreenMemory(const std::vector<Space>& spaces) {
  for (const auto& space : spaces) {
    const auto key = fullscreenKeyByID_.find(space.id);
    if (!space.isFullscreen || key == fullscreenKeyByID_.end() || metas_.contains(space.id)) {
      continue;
    }
    if (const auto remembered = metas_.find(key->second); remembered != metas_.end()) {
      willChange_.tell();
      metas_.emplace(space.id, remembered->second);
      scheduleSave();
    }
  }
}

void SpaceStore::scheduleSave() {
  // Of thousands of records making the text takes longer than anybody should have to wait.
  file_.changed([this] { return [metas = metas_] { return prettyJSON(toJson(metas)); }; });
}

void pinApplication(const std::string& bundleID, const Space& space, SpaceStore& store) {
  unpinApplication(bundleID, store);
  auto automation = store.meta(space.id).automation.value_or(SpaceAutomation());
  automation.pinnedApps.push_back(bundleID);
  store.setAutomation(automation, space.id);
}

bool unpinApplication(const std::string& bundleID, SpaceStore& store) {
  bool wasPinned = false;
  const auto metas = store.metas();  // as it was before
  for (const auto& [id, meta] : metas) {
    auto automation = meta.automation.value_or(SpaceAutomation());
    if (std::erase(automation.pinnedApps, bundleID) > 0) {
      store.setAutomation(automation, id);
      wasPinned = true;
    }
  }
  return wasPinned;
}

}  // namespace tallowin
