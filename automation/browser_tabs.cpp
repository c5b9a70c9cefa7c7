#include "automation/browser_tabs.h"

#include <algorithm>
#include <iterator>
#include <optional>

namespace tallowin {

namespace {

constexpr std::string_view browsers[] = {"com.apple.Safari",      "com.google.Chrome",          "com.brave.Browser",
                                         "com.microsoft.edgemac", "company.thebrowser.Browser", "com.vivaldi.Vivaldi"};

/// As a string literal of AppleScript. Names are others' to choose: a quotation mark in one must not end the literal.
std::string scriptLiteral(std::string_view name) {
  std::string literal = "\"";
  for (const char c : name) {
    if (c == '"' || c == '\\') {
      literal += '\\';
    }
    literal += c;
  }
  return literal + '"';
}

std::optional<std::string> runningName(Workspace& workspace, std::string_view bundleIdentifier) {
  for (const auto& application : workspace.runningApplicationsWithBundleIdentifier(bundleIdentifier)) {
    if (application.localizedName) {
      return application.localizedName;
    }
  }
  return std::nullopt;
}

}  // namespace

bool BrowserTabs::isBrowser(std::string_view bundleIdentifier) {
  return std::ranges::find(browsers, bundleIdentifier) != std::end(browsers);
}

std::vector<std::string> BrowserTabs::urls(const std::vector<std::string>& bundleIdentifiers) const {
  std::vector<std::string> urls;
  for (const auto& bundleIdentifier : bundleIdentifiers) {
    const auto name = isBrowser(bundleIdentifier) ? runningName(workspace_, bundleIdentifier) : std::nullopt;
    if (!name) {
      continue;
    }
    const auto script = "tell application " + scriptLiteral(*name) + " to get URL of every tab of front window";
    auto tabs = appleScript_.executeAndReturnError(script).value_or(std::vector<std::string>());
    std::ranges::move(tabs, std::back_inserter(urls));
  }
  return urls;
}

BrowserTabsReader BrowserTabs::reader() const {
  return {.isBrowser = [](const std::string& bundleIdentifier) { return isBrowser(bundleIdentifier); },
          .urls = [this](const std::string& bundleIdentifier) { return urls({bundleIdentifier}); }};
}

}  // namespace tallowin
