#include "automation/space_templates.h"

#include <algorithm>

#include "base/json_text.h"
#include "base/property_list_reading.h"
#include "base/record_reader.h"
#include "base/unicode.h"

namespace tallowin {

namespace {

using Slot = SpaceTemplate::Slot;

constexpr auto violet = "#9B6BF4";
constexpr auto blue = "#4F7BF7";
constexpr auto pink = "#F45E8C";
constexpr auto cyan = "#3FB9CF";
constexpr auto green = "#4FBF7A";
constexpr auto orange = "#F4A25E";
constexpr auto grey = "#8E8E93";
constexpr auto red = "#EF5B5B";

Slot slot(const char* name, const char* symbol, const char* color, std::optional<std::string> note = {},
          std::vector<std::string> apps = {}) {
  return {name, symbol, color, std::move(note), std::move(apps), {}};
}

Slot chat(std::vector<std::string> apps = {}) {
  return slot("Chat", "bubble.left.and.bubble.right", pink, {}, std::move(apps));
}

std::vector<SpaceTemplate> builtInTemplates() {
  return {
      {"Developer",
       "Code, browser, terminal, communication and docs.",
       {slot("Code", "chevron.left.forwardslash.chevron.right", violet, "Editor and terminal",
             {"com.microsoft.VSCode", "com.apple.Terminal"}),
        slot("Browser", "safari", blue, "Docs, PRs, localhost"), chat({"com.tinyspeck.slackmacgap"}),
        slot("Mail", "envelope", cyan, {}, {"com.apple.mail"}),
        slot("Music", "music.note", green, {}, {"com.spotify.client"})}},
      {"Designer",
       "Design, references, review and communication.",
       {slot("Design", "paintbrush", orange, {}, {"com.figma.Desktop"}),
        slot("References", "photo.on.rectangle", violet), slot("Review", "eye", blue), chat()}},
      {"Freelancer",
       "One Space per client, plus admin and personal.",
       {slot("Client A", "briefcase", blue), slot("Client B", "briefcase", green),
        slot("Client C", "briefcase", orange), slot("Admin", "doc.text", grey, "Invoices and email"),
        slot("Personal", "heart", pink)}},
      {"Student",
       "Classes, research, writing and downtime.",
       {slot("Class", "graduationcap", blue), slot("Research", "book", violet), slot("Writing", "doc.text", green),
        slot("Chill", "gamecontroller", orange)}},
      {"Streamer",
       "Stream, scenes, chat and tools.",
       {slot("Stream", "play.rectangle", red, {}, {"com.obsproject.obs-studio"}),
        slot("Game", "gamecontroller", violet), chat(), slot("Tools", "hammer", grey)}},
  };
}

PropertyList slotToJson(const Slot& slot) {
  PropertyList json = {{"name", slot.name}, {"apps", slot.apps}, {"urls", slot.urls}};
  const std::pair<const char*, const std::optional<std::string>&> texts[] = {
      {"symbol", slot.symbol}, {"colorHex", slot.colorHex}, {"note", slot.note}};
  for (const auto& [key, text] : texts) {
    if (text) {
      json[key] = *text;
    }
  }
  return json;
}

std::optional<Slot> slotFromJson(const PropertyList& json) {
  RecordReader reader(json);
  auto name = reader.text("name");
  Slot slot;
  slot.symbol = reader.text("symbol");
  slot.colorHex = reader.text("colorHex");
  slot.note = reader.text("note");
  slot.apps = reader.textList("apps");
  slot.urls = reader.textList("urls");
  if (!reader.good() || !name) {
    return std::nullopt;
  }
  slot.name = *std::move(name);
  return slot;
}

/// The ordinary desktops that a template is laid onto.
std::vector<Space> desktops(const SpaceSnapshot& snapshot) {
  auto display = snapshot.menuBarDisplay().value_or(DisplaySpaces());
  std::erase_if(display.spaces, [](const Space& space) { return space.isFullscreen; });
  return std::move(display.spaces);
}

}  // namespace

const std::vector<SpaceTemplate>& SpaceTemplate::builtIn() {
  static const auto templates = builtInTemplates();
  return templates;
}

PropertyList toJson(const SpaceTemplate& layout) {
  auto slots = PropertyList::array();
  for (const auto& slot : layout.slots) {
    slots.push_back(slotToJson(slot));
  }
  return {{"name", layout.name}, {"summary", layout.summary}, {"slots", std::move(slots)}};
}

std::optional<SpaceTemplate> templateFromJson(const PropertyList& json) {
  auto name = property_list::member(json, "name", property_list::text);
  auto summary = property_list::member(json, "summary", property_list::text);
  const auto* const slots = property_list::member(json, "slots");
  if (!name || !summary || slots == nullptr || !slots->is_array()) {
    return std::nullopt;
  }
  SpaceTemplate layout{*std::move(name), *std::move(summary), {}};
  for (const auto& element : *slots) {
    auto slot = slotFromJson(element);
    if (!slot) {
      return std::nullopt;
    }
    layout.slots.push_back(*std::move(slot));
  }
  return layout;
}

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
