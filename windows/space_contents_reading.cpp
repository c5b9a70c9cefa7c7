#include "windows/space_contents_reading.h"

#include <utility>

#include "base/property_list_reading.h"
#include "windows/window_list_entry.h"

namespace tallowin {

namespace {

namespace plist = property_list;

constexpr double invisibleAlpha = 0.01;
constexpr auto namelessApplication = "App";

bool isVisible(const PropertyList& entry) {
  const auto alpha = plist::member(entry, "kCGWindowAlpha", plist::real);
  return !alpha || *alpha > invisibleAlpha;
}

std::string applicationName(const RunningApplication& application, const PropertyList& entry) {
  if (application.localizedName) {
    return *application.localizedName;
  }
  return plist::member(entry, "kCGWindowOwnerName", plist::text).value_or(namelessApplication);
}

/// The entry as a window, unless it fails a test. The costly questions come last.
std::optional<WindowInfo> readWindow(const PropertyList& entry, const SpaceContentsLookups& lookups) {
  const auto owner = plist::member(entry, "kCGWindowOwnerPID", plist::integer32);
  if (plist::member(entry, "kCGWindowLayer", plist::integer) != 0 || !owner || *owner == lookups.ownPID) {
    return {};
  }
  const auto number = windowNumber(entry);
  const auto bounds = windowBounds(entry);
  const bool isLarge = bounds && bounds->size.width >= smallestWindow && bounds->size.height >= smallestWindow;
  if (!number || !isLarge || !isVisible(entry)) {
    return {};
  }
  const auto application = lookups.runningApplication(*owner);
  if (!application || application->activationPolicy != ActivationPolicy::regular) {
    return {};
  }
  const auto spaces = lookups.spacesForWindow(*number);
  if (!spaces || spaces->size() != 1) {
    return {};
  }
  return WindowInfo{*number,
                    *owner,
                    application->bundleIdentifier,
                    applicationName(*application, entry),
                    plist::member(entry, "kCGWindowName", plist::text).value_or(""),
                    *bounds,
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

SpaceContentsReading readSpaceContents(const std::optional<PropertyList>& list, const SpaceContentsLookups& lookups) {
  const auto* const entries = plist::listOfDictionaries(list ? &*list : nullptr);
  if (entries == nullptr) {
    return {};
  }
  SpaceContentsReading reading;
  ApplicationLists applications;
  for (const auto& entry : *entries) {
    if (auto window = readWindow(entry, lookups)) {
      applications.add(*window);
      reading.windows.push_back(*std::move(window));
    }
  }
  reading.appsBySpace = applications.take(lookups);
  return reading;
}

}  // namespace tallowin
