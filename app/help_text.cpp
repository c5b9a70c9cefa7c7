#include "app/help_text.h"

#include <array>

#include "app/command_line.h"
#include "commands/cli/request_words.h"
#include "commands/outcome.h"

namespace tallowin {

namespace {

constexpr std::size_t meaningColumn = 34;

constexpr auto meanings = std::to_array<ExitStatusMeaning>({
    {exit_status::success, "Done."},
    {exit_status::failure, "Nothing was done, for the reason given; or doctor found something to attend to."},
    {exit_status::notObserved, "What was asked for was not seen to happen."},
    {exit_status::usage, "A mistake in the arguments."},
    {exit_status::badData, "A file cannot be understood, or a URL names a query key twice."},
    {exit_status::noInput, "A file cannot be read."},
    {exit_status::unavailable, "There is no such desktop system, no running Tallowin to ask, or it has gone away."},
    {exit_status::cannotCreate, "A file cannot be written."},
    {exit_status::outputFailed, "The output cannot be written."},
});

/// A line of the list: what can be called, and what that does, on a line of its own where the first is long.
void addEntry(std::string& text, std::string_view called, std::string_view meaning) {
  const auto begin = text.size();
  text.append("  ").append(called);
  const auto used = text.size() - begin;
  text.append(used + 2 > meaningColumn ? "\n" + std::string(meaningColumn, ' ')
                                       : std::string(meaningColumn - used, ' '));
  text.append(meaning).append("\n");
}

}  // namespace

std::span<const ExitStatusMeaning> exitStatusMeanings() {
  return meanings;
}

std::string helpText() {
  std::string text = "Tallowin names, switches and scripts virtual desktops (\"Spaces\").\n\n";
  addEntry(text, "tallowin", "Watch the Spaces until told to quit.");
  addEntry(text, "tallowin URL", "Perform a tallowin:// URL; tallowin(1) lists them.");
  for (const auto& word : requestWordTable()) {
    addEntry(text, "tallowin " + usageOf(word), word.sentence);
  }
  text.append("\nOptions:\n");
  for (const auto& option : commandLineOptions()) {
    addEntry(text, usageOf(option), option.sentence);
  }
  text.append("\nExit status:\n");
  for (const auto& [status, meaning] : exitStatusMeanings()) {
    addEntry(text, std::to_string(status), meaning);
  }
  addEntry(text, "128 and more", "Ended by a signal.");
  return text;
}

}  // namespace tallowin
