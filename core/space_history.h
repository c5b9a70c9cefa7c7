#pragma once

#include <algorithm>
#include <optional>
#include <string>
#include <vector>

#include "core/space.h"

namespace tallowin {

/// The Spaces that the user visited last, for going back. In memory only. Main thread only.
class SpaceHistory {
 public:
  static constexpr std::size_t limit = 20;

  /// Notes that a Space became active.
  void visit(const Space& space) {
    std::erase(recent_, space.id);
    recent_.insert(recent_.begin(), space.id);
    recent_.resize(std::min(recent_.size(), limit));
  }

  /// The Space to go back to: of those visited, the latest that still exists and is not the active Space of the
  /// menu-bar display.
  [[nodiscard]] std::optional<Space> previous(const SpaceSnapshot& snapshot) const {
    const auto current = snapshot.activeSpace();
    for (const auto& id : recent_) {
      if (auto space = snapshot.space(id); space && !(current && id == current->id)) {
        return space;
      }
    }
    return std::nullopt;
  }

  /// Space ids, the latest first, none twice; at most `limit`.
  [[nodiscard]] const std::vector<std::string>& recent() const { return recent_; }

 private:
  std::vector<std::string> recent_;
};

}  // namespace tallowin
