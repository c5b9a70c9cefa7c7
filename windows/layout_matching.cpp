#include "windows/layout_matching.h"

#include <algorithm>
#include <map>
#include <string_view>

namespace tallowin {

std::vector<LayoutMatch> matchLayout(const std::vector<WindowInfo>& windows,
                                     const std::vector<WindowLayout::Entry>& entries) {
  std::map<std::string_view, std::vector<std::size_t>> remaining;  // by application, so that huge layouts cost little
  for (std::size_t i = 0; i < entries.size(); ++i) {
    remaining[entries[i].bundleID].push_back(i);
  }
  std::vector<LayoutMatch> matches;
  for (std::size_t i = 0; i < windows.size(); ++i) {
    const auto& window = windows[i];
    const auto found = window.bundleID ? remaining.find(*window.bundleID) : remaining.end();
    if (found == remaining.end() || found->second.empty()) {
      continue;
    }
    auto& candidates = found->second;
    const auto sameTitle = std::ranges::find_if(
        candidates, [&](std::size_t entry) { return !window.title.empty() && entries[entry].title == window.title; });
    const auto taken = sameTitle != candidates.end() ? sameTitle : candidates.begin();
    matches.push_back({i, *taken});
    candidates.erase(taken);
  }
  return matches;
}

}  // namespace tallowin
