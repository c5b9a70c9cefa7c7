#include "automation/space_templates.h"

#include <algorithm>

#include "base/property_list_reading.h"
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

Toast applied(const SpaceTemplate& layout) {
  return {"Applied " + layout.name + " template", "square.grid.2x2"};
}

std::size_t spacesOf(const SpaceSnapshot& snapshot) {
  return snapshot.allSpaces().size();
}

}  // namespace

const std::vector<SpaceTemplate>& SpaceTemplate::builtIn() {
  static const auto templates = builtInTemplates();
  return templates;
}

PropertyList toJson(const SpaceTemplate& layout) {
  return {{"name", layout.name}, {"summary", layout.summary}, {"slots", listToJson(layout.slots, slotToJson)}};
}

std::optional<SpaceTemplate> templateFromJson(const PropertyList& json) {
  auto name = property_list::member(json, "name", property_list::text);
  auto summary = property_list::member(json, "summary", property_list::text);
  const auto* const list = property_list::member(json, "slots");
  auto slots = list != nullptr ? listFromJson(*list, slotFromJson) : std::nullopt;
  if (!name || !summary || !slots) {
    return std::nullopt;
  }
  return SpaceTemplate{*std::move(name), *std::move(summary), *std::move(slots)};
}

SpaceTemplates::SpaceTemplates(const ProgramServices& services)
    : services_(services),
      file_(services.storage, services.paths.supportDirectory() / "templates.json", "SpaceTemplates") {}

/// The records as they stand, with what a newer version wrote into them.
PropertyList SpaceTemplates::readImported() {
  return file_.readList([](const PropertyList& record) { return templateFromJson(record).has_value(); });
}

std::vector<SpaceTemplate> SpaceTemplates::list() {
  auto templates = SpaceTemplate::builtIn();
  std::ranges::move(listFromJson(readImported(), templateFromJson).value_or(std::vector<SpaceTemplate>()),
                    std::back_inserter(templates));
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
  file_.replace(compactJSON(kept));
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

Outcome TemplateCommands::apply(const std::string& name) {
  const auto layout = templates_.named(name);
  if (!layout) {
    const auto message = "No template is called " + name;
    services_.toasts.show({message, std::nullopt, true});
    return Outcome::refused(message);
  }
  const auto outcome = templates_.apply(*layout, services_.watcher.fresh());
  if (outcome.missing > 0) {
    askToAdd(*layout, outcome);
    return Outcome::notSeen();
  }
  services_.toasts.show(applied(*layout));
  return Outcome::done();
}

void TemplateCommands::askToAdd(const SpaceTemplate& layout, SpaceTemplates::Outcome outcome) {
  const auto missing = outcome.missing;
  const Alert question{layout.name + " needs " + std::to_string(missing) + " more desktop" + (missing == 1 ? "" : "s"),
                       "Tallowin set up " + std::to_string(outcome.applied) + std::string(services_.texts().askToAdd),
                       {"Add Desktops", "Not Now"}};
  services_.alerts.show(question, lifetime_.bound([this, layout](std::optional<std::size_t> button) {
    if (button == std::size_t{0}) {
      addMissing(layout);
    }
  }));
}

/// Others may have added desktops, or removed some, since the question was asked.
void TemplateCommands::addMissing(const SpaceTemplate& layout) {
  const auto snapshot = services_.watcher.fresh();
  const auto missing = SpaceTemplates::outcome(layout, snapshot).missing;
  const auto wanted = spacesOf(snapshot) + missing;
  if (missing > 0) {
    add(layout, missing, wanted);
  } else {
    applyWhenThere(layout, wanted, patience);
  }
}

void TemplateCommands::add(const SpaceTemplate& layout, std::size_t count, std::size_t wanted) {
  adding_ = true;
  management_.addDesktop(lifetime_.bound([this, layout, count, wanted](SpaceManagement::Result result) {
    if (!result) {
      adding_ = false;
      services_.toasts.show({std::string(additionFailure(result.error(), services_.texts())), std::nullopt, true});
    } else if (count > 1) {
      const auto pause = management_.showsAtOnce() ? Duration::zero() : closingTime;
      waiting_ = services_.mainQueue.after(pause, [this, layout, count, wanted] { add(layout, count - 1, wanted); });
    } else {
      applyWhenThere(layout, wanted, patience);
    }
  }));
}

void TemplateCommands::applyWhenThere(const SpaceTemplate& layout, std::size_t wanted, Duration patienceLeft) {
  const auto snapshot = services_.watcher.fresh();
  if (spacesOf(snapshot) < wanted && patienceLeft > Duration::zero()) {
    waiting_ = services_.mainQueue.after(pollInterval, [this, layout, wanted, patienceLeft] {
      applyWhenThere(layout, wanted, patienceLeft - pollInterval);
    });
    return;
  }
  adding_ = false;
  const auto outcome = templates_.apply(layout, snapshot);
  services_.toasts.show(outcome.missing == 0 ? applied(layout)
                                             : Toast{setUpSentence(outcome, services_.texts()), std::nullopt, true});
}

std::string setUpSentence(SpaceTemplates::Outcome outcome, const DesktopTexts& texts) {
  auto sentence = "Set up " + std::to_string(outcome.applied) + " Spaces.";
  if (outcome.missing > 0) {
    sentence += " Add " + std::to_string(outcome.missing) + std::string(texts.addAndApplyAgain);
  }
  return sentence;
}

std::string templateList(const std::vector<SpaceTemplate>& templates) {
  std::size_t width = 0;
  for (const auto& layout : templates) {
    width = std::max(width, displayWidth(printable(layout.name)));
  }
  std::string text;
  for (const auto& layout : templates) {
    const auto name = printable(layout.name);
    const auto count = layout.slots.size();
    text += name + std::string(width - displayWidth(name), ' ') + "  " + std::to_string(count) + " Space" +
            (count == 1 ? " " : "s") + "  " + printable(layout.summary) + '\n';
  }
  return text;
}

}  // namespace tallowin
