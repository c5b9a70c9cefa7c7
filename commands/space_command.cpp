#include "commands/space_command.h"

#include <algorithm>
#include <array>
#include <vector>

#include "base/unicode.h"
#include "base/words.h"

namespace tallowin {

namespace {

using Matches = bool (*)(std::string_view displayName, std::string_view wanted);

constexpr Matches passes[] = {
    [](std::string_view displayName, std::string_view wanted) { return displayName == wanted; },
    [](std::string_view displayName, std::string_view wanted) { return displayName.starts_with(wanted); },
    [](std::string_view displayName, std::string_view wanted) {
      return displayName.find(wanted) != std::string_view::npos;
    },
};

std::optional<Space> withName(const std::string& name, const SpaceSnapshot& snapshot, const SpaceStore& store) {
  const auto wanted = lowerCased(name);
  const auto spaces = snapshot.allSpaces();
  std::vector<std::string> names;
  std::ranges::transform(spaces, std::back_inserter(names),
                         [&](const Space& space) { return lowerCased(store.displayName(space)); });
  for (const auto matches : passes) {
    const auto found = std::ranges::find_if(names, [&](const std::string& each) { return matches(each, wanted); });
    if (found != names.end()) {
      return spaces[static_cast<std::size_t>(found - names.begin())];
    }
  }
  return std::nullopt;
}

}  // namespace

std::string_view nameOf(const SpaceCommand& command) {
  constexpr auto names = std::to_array<std::string_view>(
      {"switchTo",   "step",        "moveWindow",   "moveWindowStep", "rename",        "note",    "setup",
       "profile",    "template",    "windows",      "removeDesktop",  "notes",         "step2D",  "back",
       "overview",   "settings",    "diagnostics",  "saveLayout",     "restoreLayout", "eject",   "launcher",
       "scratchpad", "minimizeAll", "undoMinimize", "saveAndClose",   "addDesktop",    "demoTour"});
  static_assert(names.size() == std::variant_size_v<SpaceCommand>);
  return names.at(command.index());
}

SpaceRef spaceRefFromText(const std::string& text) {
  if (lowerCased(text) == "current") {
    return SpaceRef::current();
  }
  const auto number = decimalInteger(text);
  return number ? SpaceRef::number(*number) : SpaceRef::name(text);
}

std::optional<Space> resolve(const SpaceRef& ref, const SpaceSnapshot& snapshot, const SpaceStore& store) {
  if (const auto* number = std::get_if<SpaceRef::Number>(&ref.value)) {
    return snapshot.desktop(number->number);
  }
  if (const auto* name = std::get_if<SpaceRef::Name>(&ref.value)) {
    return withName(name->name, snapshot, store);
  }
  return snapshot.activeSpace();
}

std::optional<std::string> notFoundMessage(const SpaceRef& ref) {
  if (const auto* number = std::get_if<SpaceRef::Number>(&ref.value)) {
    return "There is no Desktop " + std::to_string(number->number);
  }
  if (const auto* name = std::get_if<SpaceRef::Name>(&ref.value)) {
    return "No Space is called " + name->name;
  }
  return std::nullopt;
}

}  // namespace tallowin
