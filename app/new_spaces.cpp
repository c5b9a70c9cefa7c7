#include "app/new_spaces.h"

#include <utility>

namespace tallowin {

void NewSpaces::look(const SpaceSnapshot& snapshot) {
  Known now;
  for (const auto& display : snapshot.displays) {
    now.displays.insert(display.id);
    for (const auto& space : display.spaces) {
      now.spaces.insert(space.id);
    }
  }
  std::erase_if(waiting_, [&](const Space& space) { return !now.spaces.contains(space.id); });
  if (known_ && services_.settings.boolean("askToNameNewSpaces") && !services_.areExpected()) {
    enqueue(snapshot);
  }
  known_ = std::move(now);
  askNext();
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
  services_.naming.ask(space, true, [this] {
    asking_ = false;
    askNext();
  });
}

}  // namespace tallowin
