#include "core/space_state.h"

#include <algorithm>
#include <ranges>

#include "base/date_text.h"
#include "base/unicode.h"
#include "base/words.h"

namespace tallowin {

namespace {

template <typename Value>
PropertyList orNull(const std::optional<Value>& value) {
  return value ? PropertyList(*value) : PropertyList();
}

}  // namespace

const std::vector<SpaceFormat::Placeholder>& SpaceFormat::placeholders() {
  static const std::vector<Placeholder> table = {
      {"number", [](const Space& space, const SpaceStore&) { return desktopNumberText(space); }},
      {"name", [](const Space& space, const SpaceStore& store) { return store.displayName(space); }},
      {"id", [](const Space& space, const SpaceStore&) { return space.id; }},
      {"symbol", [](const Space& space, const SpaceStore& store) { return store.symbol(space); }},
      {"color", [](const Space& space, const SpaceStore& store) { return store.meta(space.id).colorHex.value_or(""); }},
      {"note", [](const Space& space, const SpaceStore& store) { return store.meta(space.id).note.value_or(""); }},
      {"group", [](const Space& space, const SpaceStore& store) { return store.meta(space.id).group.value_or(""); }},
      {"display", [](const Space& space, const SpaceStore&) { return space.displayID; }},
      {"active", [](const Space& space, const SpaceStore&) { return std::string(space.isActive ? "*" : ""); }},
  };
  return table;
}

std::expected<SpaceFormat::Field, std::string> SpaceFormat::fieldNamed(std::string_view name) {
  const auto found = std::ranges::find(placeholders(), name, &Placeholder::name);
  if (found != placeholders().end()) {
    return found->field;
  }
  return std::unexpected("--format knows no {" + std::string(name) + "}; there are " +
                         joined(placeholders() | std::views::transform(&Placeholder::name), ", "));
}

std::expected<SpaceFormat, std::string> SpaceFormat::parse(std::string_view text) {
  SpaceFormat format;
  Part part;
  while (!text.empty()) {
    const char first = text.front();
    const bool isBrace = first == '{' || first == '}';
    if (!isBrace || text.substr(0, 2) == std::string(2, first)) {
      part.text += first;
      text.remove_prefix(isBrace ? 2 : 1);
      continue;
    }
    const auto end = text.find('}');
    if (first == '}' || end == std::string_view::npos) {
      return std::unexpected("--format has a brace that stands alone; write {{ or }} for one");
    }
    const auto field = fieldNamed(text.substr(1, end - 1));
    if (!field) {
      return std::unexpected(field.error());
    }
    part.field = *field;
    format.parts_.push_back(std::exchange(part, {}));
    text.remove_prefix(end + 1);
  }
  format.parts_.push_back(std::move(part));
  return format;
}

std::string SpaceFormat::line(const Space& space, const SpaceStore& store) const {
  std::string text;
  for (const auto& part : parts_) {
    text += part.text;
    text += part.field != nullptr ? part.field(space, store) : "";
  }
  return printable(text) + "\n";
}

std::string desktopNumberText(const Space& space) {
  return space.desktopNumber ? std::to_string(*space.desktopNumber) : "-";
}

std::string spaceList(const SpaceSnapshot& snapshot, const SpaceStore& store) {
  using enum TextTable::Alignment;
  TextTable table({{left}, {right, 1}, {left}, {left}});
  for (const auto& display : snapshot.displays) {
    for (const auto& space : display.spaces) {
      table.add({space.isActive ? "*" : "", desktopNumberText(space), store.displayName(space),
                 snapshot.displays.size() > 1 ? display.id : ""});
    }
  }
  return table.text();
}

PropertyList spaceRecord(const Space& space, const SpaceStore& store, const AppNames& apps) {
  const auto meta = store.meta(space.id);
  return {{"id", space.id},
          {"name", store.displayName(space)},
          {"hasCustomName", store.hasCustomName(space)},
          {"display", space.displayID},
          {"isActive", space.isActive},
          {"isFullscreen", space.isFullscreen},
          {"symbol", store.symbol(space)},
          {"apps", apps(space)},
          {"number", orNull(space.desktopNumber)},
          {"color", orNull(meta.colorHex)},
          {"note", orNull(meta.note)}};
}

PropertyList stateRecord(const SpaceSnapshot& snapshot, const SpaceStore& store, const AppNames& apps, Date updatedAt) {
  auto spaces = PropertyList::array();
  for (const auto& space : snapshot.allSpaces()) {
    spaces.push_back(spaceRecord(space, store, apps));
  }
  const auto active = snapshot.activeSpace();
  return {{"version", 1},
          {"updatedAt", iso8601(updatedAt)},
          {"current", active ? PropertyList(active->id) : PropertyList()},
          {"spaces", std::move(spaces)}};
}

}  // namespace tallowin
