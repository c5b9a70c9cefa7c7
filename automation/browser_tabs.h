#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "platform/apple_script.h"
#include "platform/workspace.h"
#include "windows/browser_tabs_reader.h"

namespace tallowin {

/// Asks browsers for the tabs that they have open. Main thread only.
class BrowserTabs {
 public:
  BrowserTabs(Workspace& workspace, AppleScript& appleScript) : workspace_(workspace), appleScript_(appleScript) {}

  /// Whether the tabs of the application with this bundle identifier can be read.
  [[nodiscard]] static bool isBrowser(std::string_view bundleIdentifier);

  /// The URLs of the tabs of each browser's front window, in the order of the identifiers and then of the tabs. What is
  /// no such browser, does not run or does not answer contributes nothing.
  [[nodiscard]] std::vector<std::string> urls(const std::vector<std::string>& bundleIdentifiers) const;

  /// These functions for saved Spaces. This object must outlive them.
  [[nodiscard]] BrowserTabsReader reader() const;

 private:
  Workspace& workspace_;
  AppleScript& appleScript_;
};

}  // namespace tallowin
