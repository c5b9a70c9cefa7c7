#include "windows/window_info.h"

namespace tallowin {

namespace {

/// Hashes of members in order, each mixed into the ones before it.
template <typename... Members>
std::size_t combined(const Members&... members) {
  constexpr std::size_t goldenRatio = 0x9e3779b97f4a7c15;  // 2^64 divided by the golden ratio spreads small values
  std::size_t result = 0;
  ((result ^= std::hash<Members>{}(members) + goldenRatio + (result << 6) + (result >> 2)), ...);
  return result;
}

std::optional<std::string> iconOfBundle(Workspace& workspace, const std::optional<std::string>& bundle) {
  const auto application = bundle ? workspace.URLForApplicationWithBundleIdentifier(*bundle) : std::nullopt;
  return application ? workspace.iconForFile(*application) : std::nullopt;
}

}  // namespace

std::optional<std::string> AppOnSpace::icon(Workspace& workspace) const {
  if (pid < 0) {
    return iconOfBundle(workspace, bundleID);
  }
  const auto running = workspace.runningApplicationWithProcessIdentifier(pid);
  return running ? iconOfBundle(workspace, running->bundleIdentifier) : std::nullopt;
}

}  // namespace tallowin

std::size_t std::hash<tallowin::WindowInfo>::operator()(const tallowin::WindowInfo& window) const noexcept {
  const auto& [origin, size] = window.frame;
  return tallowin::combined(window.id, window.pid, window.bundleID, window.appName, window.title, origin.x, origin.y,
                            size.width, size.height, window.spaceID);
}

std::size_t std::hash<tallowin::AppOnSpace>::operator()(const tallowin::AppOnSpace& application) const noexcept {
  auto result = tallowin::combined(application.pid, application.bundleID, application.name);
  for (const auto window : application.windowIDs) {
    result = tallowin::combined(result, window);
  }
  return result;
}
