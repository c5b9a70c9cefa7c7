#include "windows/display_set.h"

#include <algorithm>

namespace tallowin {

std::string DisplaySet::key() const {
  std::string key;
  for (const auto& identifier : identifiers) {
    key += (key.empty() ? "" : "+") + identifier;
  }
  return key;
}

DisplaySet connectedDisplays(Displays& displays, const SpaceSnapshot& snapshot) {
  DisplaySet set{displays.displaySetIdentifiers()};
  if (set.identifiers.empty()) {
    std::ranges::transform(snapshot.displays, std::back_inserter(set.identifiers), &DisplaySpaces::id);
  }
  std::ranges::sort(set.identifiers);
  return set;
}

}  // namespace tallowin
