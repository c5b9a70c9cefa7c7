#include "app/space_naming.h"

#include <utility>

#include "core/space_provider.h"

namespace tallowin {

ShownSpace shownSpace(const Space& space, const SpaceStore& store) {
  return {space.id, store.displayName(space), space.desktopNumber, store.symbol(space)};
}

void SpaceNaming::give(const std::string& name, const std::string& spaceID) {
  store_.setName(name, spaceID);
  if (!name.empty()) {
    store_.remember(name);
  }
}

Shown SpaceNaming::ask(const Space& space, bool isNew, std::function<void()> answered) {
  return presentation_.askForName(
      shownSpace(space, store_), isNew,
      lifetime_.bound([this, id = space.id, answered = std::move(answered)](const std::optional<std::string>& name) {
        if (name) {
          give(*name, id);
        }
        answered();
      }));
}

void NewSpaces::look(const SpaceSnapshot& snapshot) {
  std::erase_if(waiting_, [&](const Space& space) { return !snapshot.space(space.id); });
  if (known_ && services_.settings.get(setting::askToNameNewSpaces) && !areExpected_()) {
    enqueue(snapshot);
  }
  learn(snapshot);
  askNext();
}

void NewSpaces::learn(const SpaceSnapshot& snapshot) {
  if (!known_) {
    known_.emplace();
    for (const auto space : services_.spacePlaces.parked()) {
      known_->spaces.insert(idOfManagedSpace(space));
    }
  }
  known_->displays.clear();
  for (const auto& display : snapshot.displays) {
    known_->displays.insert(display.id);
    for (const auto& space : display.spaces) {
      known_->spaces.insert(space.id);
    }
  }
}

void NewSpaces::enqueue(const SpaceSnapshot& snapshot) {
  for (const auto& display : snapshot.displays) {
    if (!known_->displays.contains(display.id)) {
      continue;
    }
    for (const auto& space : display.spaces) {
      if (!space.isFullscreen && !known_->spaces.contains(space.id) && !services_.store.meta(space.id).name) {
        waiting_.push_back(space);
      }
    }
  }
}

void NewSpaces::askNext() {
  if (asking_ || waiting_.empty()) {
    return;
  }
  const auto space = waiting_.front();
  waiting_.pop_front();
  asking_ = true;
  naming_.ask(space, true, [this] {
    asking_ = false;
    askNext();
  });
}

}  // namespace tallowin
