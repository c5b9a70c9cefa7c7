#include "platform/simulated/raw_spaces.h"

#include <algorithm>
#include <cstdint>

#include "base/property_list_reading.h"
#include "base/unicode.h"

namespace tallowin {

namespace {

using property_list::member;

constexpr auto identifierKey = "Display Identifier";
constexpr auto spacesKey = "Spaces";
constexpr auto currentKey = "Current Space";
constexpr auto idKey = "ManagedSpaceID";
constexpr std::int64_t fullscreenType = 4;

/// New ids stay below this whatever the list says, so that counting them up never overflows.
constexpr ManagedSpaceID idLimit = ManagedSpaceID{1} << 62;

std::optional<ManagedSpaceID> idOf(const PropertyList& space) {
  return member(space, idKey, property_list::integer);
}

bool isSpace(const PropertyList& entry) {
  return idOf(entry).has_value();
}

/// The Space with this id in a list of Spaces, or the list's end.
auto spaceIn(PropertyList& spaces, ManagedSpaceID space) {
  return std::ranges::find_if(spaces, [&](const PropertyList& candidate) { return idOf(candidate) == space; });
}

bool isDisplay(const PropertyList& entry) {
  return entry.is_object() && entry.contains(identifierKey) && entry[identifierKey].is_string() &&
         entry.contains(spacesKey) && entry[spacesKey].is_array();
}

/// Whether the entry is of this display: a UUID in any case.
bool isNamed(const PropertyList& display, std::string_view identifier) {
  return equalIgnoringCase(display[identifierKey].get_ref<const std::string&>(), identifier);
}

std::optional<ManagedSpaceID> currentOf(const PropertyList& display) {
  const auto* const found = member(display, currentKey);
  return found != nullptr ? idOf(*found) : std::nullopt;
}

bool isOrdinary(const PropertyList& space) {
  const auto* const tiles = member(space, "TileLayoutManager");
  return member(space, "type", property_list::integer) != fullscreenType && (tiles == nullptr || !tiles->is_object());
}

/// A UUID that is the same in every run and tells which Space it belongs to.
std::string uuidFor(ManagedSpaceID id) {
  const auto digits = std::to_string(id);
  return "5ACE0000-0000-4000-8000-" + std::string(12 - std::min<std::size_t>(12, digits.size()), '0') + digits;
}

PropertyList desktopEntry(ManagedSpaceID id) {
  return {{idKey, id}, {"id64", id}, {"type", 0}, {"uuid", uuidFor(id)}};
}

/// A desktop without an identity of its own.
PropertyList placeEntry(ManagedSpaceID id) {
  return {{idKey, id}, {"type", 0}};
}

DesktopDisplay displayFrom(const PropertyList& entry) {
  DesktopDisplay display{entry[identifierKey], {}, currentOf(entry), false};
  std::int64_t index = -1;
  for (const auto& space : entry[spacesKey]) {
    ++index;
    if (const auto id = idOf(space)) {
      const bool isFullscreen = !isOrdinary(space);
      display.spaces.push_back({*id, member(space, "uuid", property_list::text).value_or(""), index, isFullscreen,
                                isFullscreen ? member(space, "pid", property_list::integer32) : std::nullopt});
    }
  }
  return display;
}

}  // namespace

RawSpaces::RawSpaces() : list_(PropertyList::array()) {
  const auto spaces = PropertyList::array({desktopEntry(1), desktopEntry(2), desktopEntry(3), desktopEntry(4)});
  list_.push_back({{identifierKey, "Main"}, {currentKey, spaces[0]}, {spacesKey, spaces}});
}

std::vector<DesktopDisplay> RawSpaces::displays() const {
  std::vector<DesktopDisplay> displays;
  if (list_.is_array()) {
    for (const auto& entry : list_) {
      if (isDisplay(entry)) {
        displays.push_back(displayFrom(entry));
      }
    }
  }
  return displays;
}

std::optional<std::string> RawSpaces::displayOf(ManagedSpaceID space) const {
  for (const auto& row : displays()) {
    if (std::ranges::find(row.spaces, space, &DesktopSpace::id) != row.spaces.end()) {
      return row.id;
    }
  }
  return std::nullopt;
}

std::optional<ManagedSpaceID> RawSpaces::activeOn(std::string_view display) const {
  for (const auto& row : displays()) {
    if (row.id == display) {
      return row.current;
    }
  }
  return std::nullopt;
}

bool RawSpaces::isActive(ManagedSpaceID space) const {
  return std::ranges::any_of(displays(), [&](const DesktopDisplay& row) { return row.current == space; });
}

PropertyList* RawSpaces::displayEntry(std::string_view display) {
  if (!list_.is_array()) {
    return nullptr;
  }
  const auto found = std::ranges::find_if(list_, [&](const PropertyList& entry) {
    return isDisplay(entry) && entry[identifierKey].get_ref<const std::string&>() == display;
  });
  return found == list_.end() ? nullptr : &*found;
}

PropertyList* RawSpaces::firstEntry() {
  const auto all = displays();
  return all.empty() ? nullptr : displayEntry(all.front().id);
}

PropertyList* RawSpaces::entryWith(ManagedSpaceID space) {
  if (!list_.is_array()) {
    return nullptr;
  }
  const auto found = std::ranges::find_if(list_, [&](PropertyList& entry) {
    return isDisplay(entry) && spaceIn(entry[spacesKey], space) != entry[spacesKey].end();
  });
  return found == list_.end() ? nullptr : &*found;
}

bool RawSpaces::activate(ManagedSpaceID space) {
  auto* const entry = entryWith(space);
  if (entry == nullptr) {
    return false;
  }
  (*entry)[currentKey] = *spaceIn((*entry)[spacesKey], space);
  return true;
}

ManagedSpaceID RawSpaces::newID() {
  for (const auto& row : displays()) {
    for (const auto& space : row.spaces) {
      if (space.id < idLimit) {
        lastNewID_ = std::max(lastNewID_, space.id);
      }
    }
  }
  return ++lastNewID_;
}

std::optional<ManagedSpaceID> RawSpaces::addDesktop(std::string_view display) {
  auto* const entry = displayEntry(display);
  if (entry == nullptr) {
    return std::nullopt;
  }
  const auto id = newID();
  auto& spaces = (*entry)[spacesKey];
  auto place = spaces.size();
  while (place > 0 && !(idOf(spaces[place - 1]) && isOrdinary(spaces[place - 1]))) {
    --place;
  }
  // A display without ordinary desktops gets its first one at the left end.
  spaces.insert(spaces.begin() + static_cast<std::ptrdiff_t>(place), desktopEntry(id));
  return id;
}

std::optional<ManagedSpaceID> RawSpaces::remove(ManagedSpaceID space, std::optional<ManagedSpaceID> chosen) {
  auto* const entry = entryWith(space);
  if (entry == nullptr) {
    return std::nullopt;
  }
  const auto row = displayFrom(*entry).spaces;
  const auto at = std::ranges::find(row, space, &DesktopSpace::id);
  const auto ordinary = std::ranges::count(row, false, &DesktopSpace::isFullscreen);
  if (row.size() < 2 || (!at->isFullscreen && ordinary < 2)) {
    return std::nullopt;
  }
  const auto heir = chosen ? *chosen : at == row.begin() ? std::next(at)->id : std::prev(at)->id;
  auto& spaces = (*entry)[spacesKey];
  if (currentOf(*entry) == space) {
    (*entry)[currentKey] = *spaceIn(spaces, heir);
  }
  lastNewID_ = std::max(lastNewID_, std::min(space, idLimit));
  spaces.erase(spaceIn(spaces, space));
  return heir;
}

void RawSpaces::arrange(const std::vector<ManagedSpaceID>& ids) {
  if (auto* const entry = firstEntry()) {
    auto& spaces = (*entry)[spacesKey];
    spaces = PropertyList::array();
    for (const auto id : ids) {
      spaces.push_back(placeEntry(id));
    }
  }
}

std::vector<ManagedSpaceID> RawSpaces::renumber(const std::vector<ManagedSpaceID>& ids) {
  std::vector<ManagedSpaceID> before;
  auto* const entry = firstEntry();
  if (entry == nullptr) {
    return before;
  }
  const auto current = currentOf(*entry);
  for (auto& space : (*entry)[spacesKey]) {
    const auto id = idOf(space);
    if (!id || before.size() == ids.size()) {
      continue;
    }
    space = placeEntry(ids[before.size()]);
    before.push_back(*id);
    if (id == current) {
      (*entry)[currentKey] = space;
    }
  }
  return before;
}

std::optional<PropertyList> RawSpaces::take(ManagedSpaceID space) {
  auto* const entry = entryWith(space);
  if (entry == nullptr) {
    return std::nullopt;
  }
  auto taken = *spaceIn((*entry)[spacesKey], space);
  return remove(space) ? std::optional(std::move(taken)) : std::nullopt;
}

RawSpaces::AbsentDisplay RawSpaces::takeAbsent(std::string_view display) {
  const auto found =
      std::ranges::find_if(absent_, [&](const AbsentDisplay& absent) { return isNamed(absent.entry, display); });
  if (found == absent_.end()) {
    return {{{identifierKey, display}, {spacesKey, PropertyList::array()}}};
  }
  auto taken = std::move(*found);
  absent_.erase(found);
  return taken;
}

void RawSpaces::addDisplay(std::string_view display) {
  if (!list_.is_array()) {
    list_ = PropertyList::array();
  }
  if (displayEntry(display) != nullptr) {
    return;
  }
  auto [entry, areElsewhere] = takeAbsent(display);
  auto spaces = PropertyList::array();
  for (const auto& space : entry[spacesKey]) {
    const auto id = idOf(space);
    if (auto back = !areElsewhere ? std::optional(space) : id ? take(*id) : std::nullopt) {
      spaces.push_back(*std::move(back));
    }
  }
  if (std::ranges::none_of(spaces, isSpace)) {
    spaces.push_back(desktopEntry(newID()));
  }
  const auto current = currentOf(entry);
  if (!current || spaceIn(spaces, *current) == spaces.end()) {
    entry[currentKey] = *std::ranges::find_if(spaces, isSpace);
  }
  entry[spacesKey] = std::move(spaces);
  list_.push_back(std::move(entry));
}

void RawSpaces::removeDisplay(std::string_view display) {
  auto* const leaving = displayEntry(display);
  if (leaving == nullptr) {
    return;
  }
  auto removed = std::move(*leaving);
  list_.erase(list_.begin() + (leaving - &list_.front()));
  auto* const heir = firstEntry();
  if (heir != nullptr) {
    auto& kept = (*heir)[spacesKey];
    kept.insert(kept.end(), removed[spacesKey].begin(), removed[spacesKey].end());
  }
  absent_.push_back({std::move(removed), heir != nullptr});
}

}  // namespace tallowin
