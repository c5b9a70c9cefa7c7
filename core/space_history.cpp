#include "core/space_history.h"

namespace tallowin {

void SpaceHistory::visit(const Space& space) {
  std::erase(recent_, space.id);
  recent_.insert(recent_.begin(), space.id);
  if (recent_.size() > limit) {
    recent_.resize(limit);
  }
}

std::optional<Space> SpaceHistory::previous(const SpaceSnapshot& snapshot) const {
  const auto current = snapshot.activeSpace();
  for (const auto& id : recent_) {
    if (current && id == current->id) {
      continue;
    }
    if (auto space = snapshot.space(id)) {
      return space;
    }
  }
  return std::nullopt;
}

}  // namespace tallowin
