#include "automation/space_templates.h"

#include <algorithm>

#include "base/json_text.h"
#include "base/unicode.h"

namespace tallowin {

namespace {

/// The ordinary desktops that a template is laid onto.
std::vector<Space> desktops(const SpaceSnapshot& snapshot) {
  auto display = snapshot.menuBarDisplay().value_or(DisplaySpaces());
  std::erase_if(display.spaces, [](const Space& space) { return space.isFullscreen; });
  return std::move(display.spaces);
}

}  // namespace

SpaceTemplates::SpaceTemplates(Services services)
    : services_(services),
      file_(services.storage, services.paths.supportDirectory() / "templates.json", "SpaceTemplates") {}

/// The records as they stand, with what a newer version wrote into them.
PropertyList SpaceTemplates::readImported() {
  return file_.readList([](const PropertyList& record) { return templateFromJson(record).has_value(); });
}

std::vector<SpaceTemplate> SpaceTemplates::list() {
  auto templates = SpaceTemplate::builtIn();
  for (const auto& record : readImported()) {
    if (auto imported = templateFromJson(record)) {
      templates.push_back(*std::move(imported));
    }
  }
  return templates;
}

std::optional<SpaceTemplate> SpaceTemplates::named(std::string_view name) {
  const auto templates = list();
  auto found = std::ranges::find(templates, name, &SpaceTemplate::name);
  if (found == templates.end()) {
    found = std::ranges::find_if(
        templates, [&](const SpaceTemplate& candidate) { return equalIgnoringCase(candidate.name, name); });
  }
  return found != templates.end() ? std::optional(*found) : std::nullopt;
}

std::expected<SpaceTemplate, ForeignFault> SpaceTemplates::importFile(const std::filesystem::path& path) {
  static const std::string notUnderstood = "That file is not a Tallowin template.";
  auto json = readForeignJSON(services_.files, path, notUnderstood);
  if (!json) {
    return std::unexpected(json.error());
  }
  auto imported = templateFromJson(*json);
  if (!imported) {
    return std::unexpected(ForeignFault{notUnderstood, "a member is missing or has the wrong type", false});
  }
  auto kept = PropertyList::array();
  std::ranges::remove_copy_if(readImported(), std::back_inserter(kept),
                              [&](const PropertyList& record) { return record.at("name") == imported->name; });
  kept.push_back(*std::move(json));
  static_cast<void>(file_.write(compactJSON(kept)));  // who must know asks the storage
  return *std::move(imported);
}

SpaceTemplates::Outcome SpaceTemplates::apply(const SpaceTemplate& layout, const SpaceSnapshot& snapshot) {
  const auto spaces = desktops(snapshot);
  const auto result = outcome(layout, snapshot);
  for (std::size_t i = 0; i < result.applied; ++i) {
    fill(layout.slots[i], spaces[i].id);
  }
  return result;
}

SpaceTemplates::Outcome SpaceTemplates::outcome(const SpaceTemplate& layout, const SpaceSnapshot& snapshot) {
  const auto applied = std::min(desktops(snapshot).size(), layout.slots.size());
  return {applied, layout.slots.size() - applied};
}

void SpaceTemplates::fill(const SpaceTemplate::Slot& slot, const std::string& id) {
  auto& store = services_.store;
  const std::string name(trimmed(slot.name));
  store.setName(name, id);
  if (!name.empty()) {
    store.remember(name);
  }
  store.setSymbol(slot.symbol, id);
  store.setColor(slot.colorHex, id);
  store.setNote(std::string(trimmed(slot.note.value_or(""))), id);

  auto automation = store.meta(id).automation;
  if (!automation) {
    automation.emplace();
    automation->launchOnce = true;
  }
  automation->launchApps = installed(slot.apps);
  automation->openURLs = slot.urls;
  automation->launchOnlyIfEmpty = true;
  store.setAutomation(*automation, id);
}

/// The paths of those applications that are installed.
std::vector<std::string> SpaceTemplates::installed(const std::vector<std::string>& bundles) {
  std::vector<std::string> paths;
  for (const auto& bundle : bundles) {
    auto path = services_.workspace.URLForApplicationWithBundleIdentifier(bundle);
    const std::filesystem::path byName = "/Applications/" + bundle + ".app";
    // Templates come from others: no identifier may lead out of the folder.
    if (!path && bundle.find('/') == std::string::npos && services_.files.exists(byName)) {
      path = byName;
    }
    if (path) {
      paths.push_back(path->string());
    }
  }
  return paths;
}

}  // namespace tallowin
