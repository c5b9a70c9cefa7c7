#include "platform/x11/x11_desktop_state.h"

#include <algorithm>
#include <charconv>
#include <limits>
#include <set>

#include "base/fnv1a.h"
#include "platform/x11/x11_desktop_names_record.h"

namespace tallowin {

namespace {

constexpr std::uint64_t hashedBase = std::uint64_t{1} << 48;

std::optional<ManagedSpaceID> leadingNumber(std::string_view name) {
  std::int32_t number = 0;
  if (name.empty() || name[0] < '0' || name[0] > '9') {
    return std::nullopt;
  }
  const auto [end, error] = std::from_chars(name.data(), name.data() + name.size(), number);
  return error == std::errc() && number > 0 ? std::optional<ManagedSpaceID>(number) : std::nullopt;
}

ManagedSpaceID hashedID(std::string_view text) {
  const auto hash = fnv1a(text);
  // Folding is how FNV is shortened; cutting bits off would lose their part of the mixing.
  return static_cast<ManagedSpaceID>(hashedBase + ((hash >> 48) ^ (hash & (hashedBase - 1))));
}

/// What stands for a desktop without a name: no name can equal it, as none contains a zero byte.
std::string positionText(std::size_t index) {
  std::string text(1, '\0');
  text += std::to_string(index);
  return text;
}

std::vector<ManagedSpaceID> numberedSpaceIDs(std::size_t count) {
  std::vector<ManagedSpaceID> ids;
  for (std::size_t index = 0; index < count; ++index) {
    ids.push_back(static_cast<ManagedSpaceID>(index + 1));
  }
  return ids;
}

/// The Spaces of desktops that are known by the names which the window manager gave them.
std::vector<ManagedSpaceID> dynamicSpaceIDs(const X11DesktopProperties& properties, std::size_t count) {
  const auto record = parseDesktopNamesRecord(properties.desktopNamesRecord);
  return namedSpaceIDs(ownDesktopNames(parseDesktopNames(properties.desktopNames), record, true), count);
}

}  // namespace

std::vector<ManagedSpaceID> namedSpaceIDs(const std::vector<std::string>& names, std::size_t count) {
  std::vector<ManagedSpaceID> ids;
  std::set<ManagedSpaceID> taken;
  for (std::size_t index = 0; index < count; ++index) {
    const std::string name = index < names.size() ? names[index] : std::string();
    auto id = leadingNumber(name);
    if (!id || taken.contains(*id)) {
      id = hashedID(name.empty() ? positionText(index) : name);
    }
    while (!taken.insert(*id).second) {
      ++*id;
    }
    ids.push_back(*id);
  }
  return ids;
}

X11DesktopState readX11DesktopState(const X11DesktopProperties& properties) {
  X11DesktopState state;
  const auto named = parseCardinal(properties.supportingWmCheck);
  if (!named || *named == 0 || *named != properties.checkWindow ||
      parseCardinal(properties.checkWindowCheck) != named) {
    return state;
  }
  state.checkWindow = *named;
  state.managerName = properties.checkWindowName.format == 8 ? properties.checkWindowName.bytes : "";
  // i3 numbers its workspaces by their rank among those that exist.
  state.dynamic = state.managerName == "i3";
  if (const auto count = parseDesktopCount(properties.numberOfDesktops)) {
    state.spaces = state.dynamic ? dynamicSpaceIDs(properties, *count) : numberedSpaceIDs(*count);
  }
  if (const auto current = parseCardinal(properties.currentDesktop); current && *current < state.spaces.size()) {
    state.current = *current;
  }
  return state;
}

bool losesMinimizedWindows(const X11DesktopState& state) {
  return state.managerName == "Fluxbox";
}

std::optional<std::size_t> X11DesktopState::indexOf(ManagedSpaceID space) const {
  const auto found = std::ranges::find(spaces, space);
  return found == spaces.end() ? std::nullopt
                               : std::optional<std::size_t>(static_cast<std::size_t>(found - spaces.begin()));
}

std::optional<ManagedSpaceID> X11DesktopState::active() const {
  return current ? std::optional<ManagedSpaceID>(spaces[*current]) : std::nullopt;
}

}  // namespace tallowin
