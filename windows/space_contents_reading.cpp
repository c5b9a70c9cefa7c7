#include "windows/space_contents_reading.h"

#include <utility>

namespace tallowin {

namespace {

constexpr double invisibleAlpha = 0.01;
constexpr auto namelessApplication = "App";

bool mayCount(const DesktopWindow& window, ProcessID ownPID) {
  return window.layer == 0 && window.pid != ownPID && window.frame.size.width >= smallestWindow &&
         window.frame.size.height >= smallestWindow && window.alpha > invisibleAlpha;
}

/// The window as one that counts, unless it does not. The costly questions come last.
std::optional<WindowInfo> readWindow(const DesktopWindow& window, const SpaceContentsLookups& lookups) {
  if (!mayCount(window, lookups.ownPID)) {
    return {};
  }
  const auto application = lookups.runningApplication(window.pid);
  if (!application || application->activationPolicy != ActivationPolicy::regular) {
    return {};
  }
  const auto spaces = window.spaces ? window.spaces : lookups.spacesForWindow(window.id);
  if (!spaces || spaces->size() != 1) {
    return {};
  }
  return WindowInfo{window.id,
                    window.pid,
                    application->bundleIdentifier,
                    application->localizedName.value_or(window.ownerName.value_or(namelessApplication)),
                    window.title.value_or(""),
                    window.frame,
                    spaces->front()};
}

/// Gathers windows into applications, in the order in which they come.
class ApplicationLists {
 public:
  void add(const WindowInfo& window) {
    auto& applications = lists_[window.spaceID];
    const auto [place, isFirst] = places_.try_emplace({window.spaceID, window.pid}, applications.size());
    if (isFirst) {
      applications.push_back({window.pid, std::nullopt, window.appName, {}});
    }
    applications[place->second].windowIDs.push_back(window.id);
  }

  /// The lists, with bundle identifiers as they are by now.
  AppsBySpace take(const SpaceContentsLookups& lookups) {
    for (auto& [space, applications] : lists_) {
      for (auto& application : applications) {
        const auto running = lookups.runningApplication(application.pid);
        application.bundleID = running ? running->bundleIdentifier : std::nullopt;
      }
    }
    return std::move(lists_);
  }

 private:
  AppsBySpace lists_;
  std::map<std::pair<ManagedSpaceID, ProcessID>, std::size_t> places_;
};

}  // namespace

SpaceContentsReading readSpaceContents(const std::optional<std::vector<DesktopWindow>>& list,
                                       const SpaceContentsLookups& lookups) {
  SpaceContentsReading reading;
  ApplicationLists applications;
  for (const auto& entry : list.value_or(std::vector<DesktopWindow>())) {
    if (auto window = readWindow(entry, lookups)) {
      applications.add(*window);
      reading.windows.push_back(*std::move(window));
    }
  }
  reading.appsBySpace = applications.take(lookups);
  return reading;
}

}  // namespace tallowin
