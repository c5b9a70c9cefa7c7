#include "platform/simulated/simulated_spaces.h"

#include <algorithm>

namespace tallowin {

namespace {

constexpr std::size_t mostDesktops = 64;

}  // namespace

std::optional<std::string> SimulatedSpaces::displayUnderPointer() const {
  const auto* const pointed = state_.displayAt(state_.pointer);
  std::optional<std::string> shared;
  for (const auto& row : displays()) {
    // "Main" is the main display, or all of them where they share their Spaces.
    if (row.id == "Main") {
      shared = row.id;
    } else if (pointed != nullptr && state_.displayNamed(row.id) == pointed) {
      return row.id;
    }
  }
  return pointed != nullptr ? shared : std::nullopt;
}

void SimulatedSpaces::switchTo(ManagedSpaceID space, SwitchCause cause) {
  if (const auto display = state_.spaces.displayOf(space)) {
    underWay_[*display] =
        queue_.after(switchTime_, [this, display = *display, space, cause] { arrive(display, space, cause); });
  }
}

bool SimulatedSpaces::switchNow(ManagedSpaceID space) {
  const auto display = state_.spaces.displayOf(space);
  if (!display) {
    return false;
  }
  const auto before = state_.spaces.activeOn(*display);
  state_.spaces.activate(space);
  if (before != space) {
    announceActive(*display, space);
  }
  return true;
}

void SimulatedSpaces::announceActive(const std::string& display, ManagedSpaceID space) {
  journal_.record("activeSpace", {{"display", display}, {"space", space}});
  onArrival(display, space);
  onServerEvent(activeSpaceEvent);
}

void SimulatedSpaces::arrive(const std::string& display, ManagedSpaceID space, SwitchCause cause) {
  const auto before = state_.spaces.activeOn(display);
  switchNow(space);
  if (cause != SwitchCause::gesture || bounces_ == 0 || !before || before == space) {
    return;
  }
  --bounces_;
  underWay_[display] = queue_.after(bounceAfter_, [this, display, space, before = *before] {
    if (state_.spaces.activeOn(display) == space) {
      switchNow(before);
    }
  });
}

void SimulatedSpaces::bounceNext(int count, Duration after) {
  bounces_ = count;
  bounceAfter_ = after;
}

bool SimulatedSpaces::addDesktop(const std::string& display) {
  auto added = state_.spaces.addDesktop(display);
  if (!added) {
    return false;
  }
  if (places_) {
    places_->assign(places_->get().withNew());
    renumber();
    added = places_->get().ids().back();
  }
  journal_.record("spaceAdded", {{"display", display}, {"space", *added}});
  announceList();
  return true;
}

bool SimulatedSpaces::removeDesktop(ManagedSpaceID space, std::optional<ManagedSpaceID> heir) {
  const auto display = state_.spaces.displayOf(space);
  const auto active = display ? state_.spaces.activeOn(*display) : std::nullopt;
  if (!takeAway(space, heir)) {
    return false;
  }
  if (places_) {
    const auto& ids = places_->get().ids();
    places_->assign(places_->get().without(static_cast<std::size_t>(std::ranges::find(ids, space) - ids.begin())));
    renumber();
  }
  journal_.record("spaceRemoved", {{"display", *display}, {"space", space}});
  announceCount(*display, active == space);
  return true;
}

/// A neighbour gets the windows. False when it has to stay.
bool SimulatedSpaces::takeAway(ManagedSpaceID space, std::optional<ManagedSpaceID> chosen) {
  const auto heir = state_.spaces.remove(space, chosen);
  for (auto& window : state_.windows) {
    std::ranges::replace(window.spaces, space, heir.value_or(space));
  }
  return heir.has_value();
}

void SimulatedSpaces::announceCount(const std::string& display, bool activeHasGone) {
  const auto active = state_.spaces.activeOn(display);
  if (activeHasGone && active) {
    onArrival(display, *active);
    onServerEvent(activeSpaceEvent);
  }
  announceList();
}

void SimulatedSpaces::keepPlaces(Storage& storage, const std::filesystem::path& file) {
  places_.emplace(storage, file, true);
  if (const auto all = displays(); !all.empty() && !all.front().spaces.empty()) {
    places_->countSeen(all.front().spaces.size());
    renumber();
  }
}

/// The desktops get the ids that belong to their places, and their windows with them.
void SimulatedSpaces::renumber() {
  const auto& ids = places_->get().ids();
  const auto before = state_.spaces.renumber(ids);
  for (auto& window : state_.windows) {
    for (auto& space : window.spaces) {
      const auto place = std::ranges::find(before, space) - before.begin();
      space = place < std::ssize(before) ? ids[static_cast<std::size_t>(place)] : space;
    }
  }
}

void SimulatedSpaces::setDesktopCount(std::size_t count) {
  const auto before = displays();
  if (!places_ || before.empty() || count < 1 || count > mostDesktops) {
    return;
  }
  const auto& row = before.front();
  for (auto size = row.spaces.size(); size < count; ++size) {
    state_.spaces.addDesktop(row.id);
  }
  for (auto size = row.spaces.size(); size > count; --size) {
    takeAway(row.spaces[size - 1].id);
  }
  places_->countSeen(count);
  renumber();
  journal_.record("desktopCount", {{"count", count}});
  announceCount(row.id, row.current && state_.spaces.activeOn(row.id) != row.current);
}

void SimulatedSpaces::addByOthers(const std::optional<std::string>& display) {
  const auto rows = displays();
  if (places_) {
    setDesktopCount(places_->get().ids().size() + 1);
  } else if (display || !rows.empty()) {
    addDesktop(display ? *display : rows.front().id);
  }
}

void SimulatedSpaces::removeByOthers(ManagedSpaceID space) {
  if (places_) {
    setDesktopCount(places_->get().ids().size() - 1);
  } else {
    removeDesktop(space);
  }
}

std::optional<std::vector<ManagedSpaceID>> SimulatedSpaces::places() {
  return places_ ? std::optional(places_->get().ids()) : std::nullopt;
}

std::vector<ManagedSpaceID> SimulatedSpaces::parked() {
  return places_ ? places_->get().parked() : std::vector<ManagedSpaceID>();
}

void SimulatedSpaces::adopt(const std::vector<ManagedSpaceID>& spaces) {
  if (places_) {
    places_->adopt(spaces);
    renumber();
    journal_.record("adoptPlaces", {{"spaces", spaces}});
    announceList();
  }
}

bool SimulatedSpaces::restore(const std::vector<ManagedSpaceID>& spaces) {
  if (!places_) {
    return false;
  }
  const auto wanted = places_->get().withRemoved(spaces);
  state_.spaces.arrange(wanted);
  places_->assign(wanted);
  journal_.record("restorePlaces", {{"spaces", wanted}});
  announceList();
  return true;
}

void SimulatedSpaces::announceList() {
  onServerEvent(listEvent);
  onListChanged();
}

void SimulatedSpaces::replaceList(PropertyList list) {
  state_.spaces = RawSpaces(std::move(list));
  if (const auto all = displays(); places_ && !all.empty() && !all.front().spaces.empty()) {
    places_->countSeen(all.front().spaces.size());
    renumber();
  }
  announceList();
}

void SimulatedSpaces::connectDisplay(const SimulatedDisplay& display) {
  if (state_.display(display.id) != nullptr) {
    return;
  }
  const auto before = displays();
  state_.displays.push_back(display);
  if (!places_) {  // else all displays share the desktops
    state_.spaces.addDisplay(display.uuid);
  }
  announceList();
  // It may have taken its active Space back from another display.
  for (const auto& row : before) {
    const auto active = state_.spaces.activeOn(row.id);
    if (active && active != row.current) {
      announceActive(row.id, *active);
    }
  }
}

bool SimulatedSpaces::disconnectDisplay(DisplayID display) {
  const auto found = std::ranges::find(state_.displays, display, &SimulatedDisplay::id);
  if (found == state_.displays.end()) {
    return false;
  }
  // The list may write the UUID in another case.
  for (const auto& row : displays()) {
    if (row.id != "Main" && state_.displayNamed(row.id) == &*found) {
      state_.spaces.removeDisplay(row.id);
      if (state_.menuBarDisplay == row.id) {
        const auto left = displays();
        state_.menuBarDisplay = left.empty() ? std::nullopt : std::optional(left.front().id);
      }
    }
  }
  state_.displays.erase(found);
  announceList();
  return true;
}

}  // namespace tallowin
