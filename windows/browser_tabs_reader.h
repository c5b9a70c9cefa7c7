#pragma once

#include <functional>
#include <string>
#include <vector>

namespace tallowin {

/// How saved Spaces learn of browser tabs. Both functions must be there.
struct BrowserTabsReader {
  /// Whether the application with this bundle identifier is a browser whose tabs can be read. Asks no application.
  std::function<bool(const std::string& bundleID)> isBrowser;
  /// The URLs of the tabs that a browser has open, in their order; none when they cannot be had.
  std::function<std::vector<std::string>(const std::string& bundleID)> urls;
};

}  // namespace tallowin
