#include "automation/keystroke.h"

#include <algorithm>
#include <iterator>

#include "automation/trimmed_parts.h"
#include "base/unicode.h"

namespace tallowin {

namespace {

struct ModifierName {
  std::string_view name;
  std::uint64_t flag;
};

constexpr ModifierName modifierNames[] = {
    {"cmd", CGEventFlag::command},      {"command", CGEventFlag::command}, {"⌘", CGEventFlag::command},
    {"shift", CGEventFlag::shift},      {"⇧", CGEventFlag::shift},         {"opt", CGEventFlag::alternate},
    {"option", CGEventFlag::alternate}, {"alt", CGEventFlag::alternate},   {"⌥", CGEventFlag::alternate},
    {"ctrl", CGEventFlag::control},     {"control", CGEventFlag::control}, {"⌃", CGEventFlag::control},
};

struct KeyName {
  std::string_view name;
  VirtualKeyCode keyCode;
};

// HIToolbox/Events.h, kVK_ANSI_* and the keys that do not depend on the layout.
constexpr KeyName keyNames[] = {
    {"a", 0},       {"s", 1},      {"d", 2},       {"f", 3},       {"h", 4},     {"g", 5},      {"z", 6},
    {"x", 7},       {"c", 8},      {"v", 9},       {"b", 11},      {"q", 12},    {"w", 13},     {"e", 14},
    {"r", 15},      {"y", 16},     {"t", 17},      {"1", 18},      {"2", 19},    {"3", 20},     {"4", 21},
    {"6", 22},      {"5", 23},     {"=", 24},      {"9", 25},      {"7", 26},    {"-", 27},     {"8", 28},
    {"0", 29},      {"]", 30},     {"o", 31},      {"u", 32},      {"[", 33},    {"i", 34},     {"p", 35},
    {"return", 36}, {"enter", 36}, {"l", 37},      {"j", 38},      {"'", 39},    {"k", 40},     {";", 41},
    {"\\", 42},     {",", 43},     {"/", 44},      {"n", 45},      {"m", 46},    {".", 47},     {"tab", 48},
    {"space", 49},  {"`", 50},     {"delete", 51}, {"escape", 53}, {"esc", 53},  {"left", 123}, {"right", 124},
    {"down", 125},  {"up", 126},   {"f1", 122},    {"f2", 120},    {"f3", 99},   {"f4", 118},   {"f5", 96},
    {"f6", 97},     {"f7", 98},    {"f8", 100},    {"f9", 101},    {"f10", 109}, {"f11", 103},  {"f12", 111},
};
static_assert(std::size(keyNames) == 70);

}  // namespace

std::optional<Keystroke> Keystroke::parse(std::string_view text) {
  std::uint64_t flags = 0;
  std::optional<VirtualKeyCode> key;
  for (const auto& part : trimmedParts(lowerCased(text), "+")) {
    const auto modifier = std::ranges::find(modifierNames, part, &ModifierName::name);
    if (modifier != std::end(modifierNames)) {
      flags |= modifier->flag;
      continue;
    }
    const auto found = std::ranges::find(keyNames, part, &KeyName::name);
    key = found != std::end(keyNames) ? std::optional(found->keyCode) : std::nullopt;
  }
  return key ? std::optional(Keystroke{*key, flags}) : std::nullopt;
}

void Keystroke::send(std::string_view text, Events& events) {
  const auto keystroke = parse(text);
  if (!keystroke) {
    return;
  }
  for (const bool down : {true, false}) {
    if (const auto event = events.CGEventCreateKeyboardEvent(keystroke->keyCode, down)) {
      events.CGEventSetFlags(*event, keystroke->flags);
      events.CGEventPost(CGEventTap::hid, *event);
    }
  }
}

}  // namespace tallowin
