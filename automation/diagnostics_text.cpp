#include "automation/diagnostics_text.h"

#include <ranges>

#include "base/unicode.h"
#include "base/words.h"

namespace tallowin {

namespace {

void appendDesktop(std::vector<std::string>& lines, const DiagnosticFacts& facts) {
  if (!facts.displaySet.empty()) {
    lines.push_back("Display set: " + facts.displaySet);
  }
  if (facts.distribution) {
    lines.push_back("Distribution: " + *facts.distribution);
  }
  if (const auto& manager = facts.windowManager) {
    const auto name = manager->name.empty() ? "without a name" : manager->name;
    lines.push_back("Window manager: " + name + (manager->version.empty() ? "" : " " + manager->version));
    lines.push_back("EWMH not supported: " +
                    (manager->missingHints.empty() ? "nothing" : joined(manager->missingHints, ", ")));
  }
}

}  // namespace

std::string diagnosticsText(const DiagnosticFacts& facts) {
  std::vector<std::string> lines = {
      "Tallowin " + facts.program.version + " (" + facts.program.build + ")",
      facts.system,
      "Bridge health: 0b" + binary(facts.health.bits()) + " healthy=" + trueOrFalse(facts.health.healthy()),
      "Accessibility: " + trueOrFalse(facts.accessibility),
      "Screen Recording: " + trueOrFalse(facts.screenRecording),
      "Switch mode: " + std::string(storedText(facts.switchMode)),
      "Displays: " + std::to_string(facts.displays) + ", Spaces: " + std::to_string(facts.spaces),
  };
  for (const auto& check : facts.checks) {
    lines.push_back("Check " + check.title + ": " + (check.ok ? "ok" : "needs attention"));
  }
  if (!facts.shortcutFailures.empty()) {
    lines.push_back("Shortcuts taken by other apps: " + joined(facts.shortcutFailures, ", "));
  }
  appendDesktop(lines, facts);
  // Names come from outside; each fact stays on its line.
  for (auto& line : lines) {
    line = printable(line);
  }
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
