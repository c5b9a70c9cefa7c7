#include "automation/diagnostics.h"

#include <algorithm>
#include <iterator>
#include <ranges>

#include "base/unicode.h"
#include "base/words.h"
#include "windows/window_layout.h"

namespace tallowin {

namespace {

void appendDesktop(std::vector<std::string>& lines, const ProgramServices& services, const SpaceSnapshot& snapshot) {
  if (const auto displaySet = displaySetKey(connectedDisplays(services.displays, snapshot)); !displaySet.empty()) {
    lines.push_back("Display set: " + displaySet);
  }
  const auto release = services.files.read("/etc/os-release");
  if (const auto distribution = release ? prettyNameOfOSRelease(*release) : std::nullopt) {
    lines.push_back("Distribution: " + *distribution);
  }
  if (const auto manager = services.desktopFacts.windowManager()) {
    const auto name = manager->name.empty() ? "without a name" : manager->name;
    lines.push_back("Window manager: " + name + (manager->version.empty() ? "" : " " + manager->version));
    lines.push_back("EWMH not supported: " +
                    (manager->missingHints.empty() ? "nothing" : joined(manager->missingHints, ", ")));
  }
}

}  // namespace

std::vector<SetUpCheck> setUpChecks(const Platform& platform, const Storage& storage) {
  const bool trusted = platform.windows.mayChange();
  const bool permitted = platform.screenCapture.CGPreflightScreenCaptureAccess();
  const bool saved = storage.isSound();
  const auto* const advice = platform.desktopKind() == DesktopKind::driven
                                 ? "Give Tallowin the permission in the system's settings."
                                 : "It takes a desktop for that; see what is said of the display.";
  std::vector<SetUpCheck> checks = {
      {"Accessibility", trusted, trusted ? "Windows can be moved." : "Windows cannot be moved.", trusted ? "" : advice},
      {"Screen Recording", permitted, permitted ? "Pictures can be taken." : "Pictures cannot be taken.",
       permitted ? "" : advice},
      {"Files saved", saved, saved ? "What was said is in its files." : "Files cannot be written.",
       saved ? "" : "The log says which, and why; they are tried again until they can be written."}};
  std::ranges::copy(platform.desktopFacts.checks(), std::back_inserter(checks));
  return checks;
}

std::string diagnosticsReport(const ProgramServices& services, const SpaceSnapshot& snapshot,
                              const std::vector<std::string>& shortcutFailures) {
  const auto health = services.desktop.health();
  std::vector<std::string> lines = {
      "Tallowin " + services.program.version + " (" + services.program.build + ")",
      services.system.operatingSystemName() + " " + services.system.operatingSystemVersionString(),
      "Bridge health: 0b" + binary(health.bits()) + " healthy=" + trueOrFalse(health.healthy()),
      "Accessibility: " + trueOrFalse(services.windows.mayChange()),
      "Screen Recording: " + trueOrFalse(services.screenCapture.CGPreflightScreenCaptureAccess()),
      "Switch mode: " + std::string(storedText(services.settings.get(setting::switchMode))),
      "Displays: " + std::to_string(snapshot.displays.size()) +
          ", Spaces: " + std::to_string(snapshot.allSpaces().size()),
  };
  for (const auto& check : setUpChecks(services, services.storage)) {
    lines.push_back("Check " + check.title + ": " + (check.ok ? "ok" : "needs attention"));
  }
  if (!shortcutFailures.empty()) {
    lines.push_back("Shortcuts taken by other apps: " + joined(shortcutFailures, ", "));
  }
  appendDesktop(lines, services, snapshot);
  // Names come from outside; each fact stays on its line.
  std::ranges::transform(lines, lines.begin(), [](const std::string& line) { return printable(line); });
  return joined(lines, "\n");
}

std::optional<std::string> prettyNameOfOSRelease(std::string_view text) {
  constexpr std::string_view key = "PRETTY_NAME=";
  for (const auto part : std::views::split(text, '\n')) {
    const std::string_view line(part.begin(), part.end());
    if (!line.starts_with(key)) {
      continue;
    }
    auto value = trimmed(line.substr(key.size()));
    const bool quoted = value.size() >= 2 && (value.front() == '"' || value.front() == '\'');
    if (quoted && value.back() == value.front()) {
      value = value.substr(1, value.size() - 2);
    }
    return std::string(value);
  }
  return std::nullopt;
}

}  // namespace tallowin
