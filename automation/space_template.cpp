#include "automation/space_template.h"

#include "base/property_list_reading.h"
#include "base/record_reader.h"

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

}  // namespace tallowin
