#include "app/space_naming.h"

#include <utility>

#include "app/shown_state.h"
#include "core/space_provider.h"

namespace tallowin {

void SpaceNaming::give(const std::string& name, const std::string& spaceID) {
  services_.store.setName(name, spaceID);
  if (!name.empty()) {
    services_.store.remember(name);
  }
}

Shown SpaceNaming::ask(const Space& space, bool isNew, std::function<void()> answered) {
  const NameQuestion question{spaceRow(space, services_.watcher.latest(), services_.store), isNew,
                              services_.store.meta(space.id).name.value_or(""),
                              services_.settings.get(setting::recentSpaceNames)};
  return services_.presentation.askForName(
      question,
      lifetime_.bound([this, id = space.id, answered = std::move(answered)](const std::optional<GivenName>& given) {
        if (given) {
          take(*given, id);
        }
        answered();
      }));
}

void SpaceNaming::take(const GivenName& given, const std::string& spaceID) {
  const auto orNothing = [](const std::string& text) { return text.empty() ? std::nullopt : std::optional(text); };
  give(given.name, spaceID);
  if (given.symbol) {
    services_.store.setSymbol(orNothing(*given.symbol), spaceID);
  }
  if (given.colorHex) {
    services_.store.setColor(orNothing(*given.colorHex), spaceID);
  }
}

Shown SpaceNaming::askForNote(const Space& space) {
  const NoteQuestion question{spaceRow(space, services_.watcher.latest(), services_.store),
                              services_.store.meta(space.id).note.value_or("")};
  return services_.presentation.askForNote(
      question, lifetime_.bound([this, id = space.id](const std::optional<std::string>& text) {
        if (text) {
          services_.store.setNote(*text, id);
        }
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
