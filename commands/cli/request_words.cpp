#include "commands/cli/request_words.h"

#include <algorithm>
#include <array>
#include <ranges>
#include <string_view>
#include <utility>

namespace tallowin {

namespace {

using enum RequestKind;
using enum RequestNature;

constexpr auto words = std::to_array<RequestWord>({
    {"list", list, query, "", "--json|--names|--urls|--format TEXT", "List the Spaces."},
    {"current", current, query, "", "--json|--format TEXT", "Name the active Space."},
    {"watch", watch, control, "", "--json|--format TEXT", "Print the state, and a line for every change."},
    {"switch", command, action, "SPACE", "", "Switch to a Space, unless it is active.", "switch"},
    {"next", command, action, "", "", "Step to the next Space.", "next"},
    {"previous", command, action, "", "", "Step to the previous Space.", "previous"},
    {"up", command, action, "", "", "Step up in the grid of Spaces.", "up"},
    {"down", command, action, "", "", "Step down in it.", "down"},
    {"back", command, action, "", "", "Go back to the Space that was active before.", "back"},
    {"move-window", command, action, "SPACE", "--follow",
     "Move the front window to a Space, or \"next\" or \"previous\"; --follow goes along.", "move-window"},
    {"rename", command, action, "SPACE NAME", "", "Name a Space; an empty name takes it away.", "rename"},
    {"note", command, action, "[SPACE] TEXT", "", "Note something about a Space; an empty text takes it away.", "note"},
    {"notes", command, action, "[SPACE]", "", "Open the file of notes of a Space.", "notes"},
    {"ask-note", askNote, action, "[SPACE]", "", "Open the dialog for the note of a Space."},
    {"setup", command, action, "[SPACE]", "", "Open the settings of a Space.", "setup"},
    {"edit", edit, action, "SPACE",
     "--name TEXT|--symbol SYMBOL|--color #RRGGBB|--note TEXT|--group TEXT|--icon FILE|--json",
     "Change what is said of a Space; an empty text takes it away."},
    {"automation", automation, action, "SPACE [get|set|clear|run] [FILE]", "",
     "Show, set, clear or run what is done on entering and leaving a Space, as JSON."},
    {"add-desktop", command, action, "", "", "Add a desktop.", "add-desktop"},
    {"remove-desktop", command, action, "SPACE", "--ask", "Remove a desktop; --ask asks before it does.",
     "remove-desktop"},
    {"windows", windows, query, "", "--all|--json", "List the windows of the active Space, or of all."},
    {"search", command, action, "", "--all", "Open the search for windows of the active Space, or of all.", "windows"},
    {"mark", mark, action, "[LETTER]", "", "Mark the front window with a letter, or with the next one pressed."},
    {"jump", jump, action, "[LETTER]", "", "Go to the window marked with it."},
    {"pin", pin, action, "APP SPACE", "", "Send new windows of an application to a Space from now on."},
    {"unpin", unpin, action, "APP", "", "Let them stay where they open."},
    {"minimize-all", command, action, "", "", "Minimise the windows of the active Space.", "minimize-all"},
    {"undo-minimize", command, action, "", "", "Bring them all back.", "undo-minimize"},
    {"scratchpad", command, action, "", "", "Show or hide the scratchpad application.", "scratchpad"},
    {"save-layout", command, action, "", "", "Note where every window is.", "save-layout"},
    {"restore-layout", command, action, "", "", "Put every window back there.", "restore-layout"},
    {"eject", command, action, "", "", "Gather all windows on the built-in display.", "eject"},
    {"save-space", command, action, "", "", "Save what is open on the active Space, and close it.", "save-space"},
    {"saved-spaces", savedSpaces, query, "", "--json|--names", "List the Spaces that were saved and closed."},
    {"reopen", reopen, action, "SAVED-SPACE", "", "Open the applications of a saved Space again."},
    {"profile", profile, action, "list|save|use|use-automatically|delete [PROFILE]", "--never|--json|--names",
     "Keep whole sets of names; use one whenever the present displays are connected, or --never."},
    {"template", layTemplate, action, "list|apply|import [TEMPLATE]", "--json|--names",
     "Name a number of Spaces at once; import takes a file."},
    {"time", time, query, "", "--days N|--csv FILE|--json", "Print the time spent in each Space."},
    {"export", exportFile, action, "FILE", "", "Write everything that you have configured to a file."},
    {"import", importFile, action, "FILE", "", "Take such a file over."},
    {"restore", restore, action, "[NUMBER]", "--json",
     "List the copies kept before something was replaced, or put one back."},
    {"overview", command, action, "", "", "Open the overview.", "overview"},
    {"launcher", command, action, "", "", "Open the launcher.", "launcher"},
    {"settings", command, action, "", "", "Open the settings.", "settings"},
    {"demo-tour", command, action, "", "", "Show what Tallowin does, with sample names.", "demo-tour"},
    {"shortcuts", shortcuts, query, "", "--json", "List the key combinations, what they do, and whether they work."},
    {"diagnostics", diagnostics, query, "", "", "Print a report for support requests."},
    {"copy-diagnostics", command, action, "", "", "Copy it.", "diagnostics"},
    {"doctor", doctor, control, "", "--json", "Tell what works here, what does not, and what to do about it."},
    {"menu", menu, query, "", "--json", "List what the menu in the panel has, with what each entry does."},
    {"ui", ui, control, "WORD...", "", "What the process says that shows the windows."},
    {"answer", answer, control, "BUTTON", "", "Answer a question that Tallowin asks."},
    {"quit", quit, control, "", "", "Tell the running Tallowin to quit."},
});

std::vector<std::string> split(std::string_view text, char separator) {
  std::vector<std::string> parts;
  for (const auto part : std::views::split(text, separator)) {
    if (!std::ranges::empty(part)) {
      parts.emplace_back(part.begin(), part.end());
    }
  }
  return parts;
}

std::string usage(const RequestWord& word) {
  return "it is called so: tallowin " + usageOf(word);
}

bool isOptional(std::string_view operand) {
  return operand.starts_with('[');
}

/// Whether so many operands can be given, and none of them names a Space by an empty text, which would be a part of
/// every name.
bool fit(const RequestWord& word, std::span<const std::string> given) {
  const auto names = operandsOf(word);
  const auto required = names.size() - static_cast<std::size_t>(std::ranges::count_if(names, isOptional));
  if (!names.empty() && names.back().ends_with("...")) {
    return given.size() >= required;
  }
  if (given.size() < required || given.size() > names.size()) {
    return false;
  }
  auto optional = given.size() - required;
  auto operand = given.begin();
  for (const auto& name : names) {
    if (isOptional(name) && optional == 0) {
      continue;
    }
    optional -= isOptional(name) ? 1 : 0;
    if (operand->empty() && (name == "SPACE" || name == "[SPACE]")) {
      return false;
    }
    ++operand;
  }
  return true;
}

constexpr std::string_view endOfOptions = "--";

bool isOption(std::string_view text) {
  return text.starts_with(endOfOptions);
}

/// Whether the word takes the option: nothing if not, else whether a value follows it.
std::optional<bool> takesValue(const RequestWord& word, const std::string& option) {
  for (const auto& each : optionsOf(word)) {
    if (each == option || each.starts_with(option + " ")) {
      return each != option;
    }
  }
  return std::nullopt;
}

std::expected<RequestWords, std::string> readWord(const RequestWord& word, std::span<const std::string> given) {
  RequestWords read{word.kind, {}, {}, word.command};
  bool named = false;
  bool optionsEnded = false;
  for (std::size_t i = 0; i < given.size(); ++i) {
    if (optionsEnded || !isOption(given[i])) {
      if (std::exchange(named, true)) {
        read.operands.push_back(given[i]);
      }
      continue;
    }
    if (given[i] == endOfOptions) {
      optionsEnded = true;
      continue;
    }
    const auto valued = takesValue(word, given[i]);
    if (!valued || (*valued && i + 1 == given.size())) {
      return std::unexpected(usage(word));
    }
    read.options[given[i]] = *valued ? given[i + 1] : "";
    i += *valued ? 1 : 0;
  }
  return fit(word, read.operands) ? std::expected<RequestWords, std::string>(read) : std::unexpected(usage(word));
}

std::string unknown(const std::string& argument) {
  return "unknown argument \"" + argument + "\"; --help lists what there is";
}

bool isURL(const std::string& text) {
  return text.find("://") != std::string::npos;
}

}  // namespace

RequestNature RequestWords::nature() const {
  if (kind == RequestKind::start || kind == RequestKind::url) {
    return kind == RequestKind::start ? control : action;
  }
  const bool lists =
      kind == restore ? operands.empty() : (kind == profile || kind == layTemplate) && operands.front() == "list";
  const bool shows = kind == automation && (operands.size() == 1 || operands[1] == "get");
  if (lists || shows) {
    return query;
  }
  return std::ranges::find(words, kind, &RequestWord::kind)->nature;
}

std::span<const RequestWord> requestWordTable() {
  return words;
}

std::vector<std::string> operandsOf(const RequestWord& word) {
  return split(word.operands, ' ');
}

std::vector<std::string> optionsOf(const RequestWord& word) {
  return split(word.options, '|');
}

std::string usageOf(const RequestWord& word) {
  std::string text(word.name);
  if (!word.operands.empty()) {
    text.append(" ").append(word.operands);
  }
  for (const auto& option : optionsOf(word)) {
    text.append(" [").append(option).append("]");
  }
  return text;
}

std::expected<RequestWords, std::string> readRequestWords(std::span<const std::string> given) {
  if (given.empty()) {
    return RequestWords{};
  }
  const auto name = std::ranges::find_if_not(given, isOption);
  if (name == given.end() && std::ranges::any_of(words, [&](const RequestWord& word) {
        return takesValue(word, given.front()).has_value();
      })) {
    return std::unexpected(given.front() + " goes with what is asked for, as in: tallowin list --json");
  }
  if (name == given.end()) {
    return std::unexpected(unknown(given.front()));
  }
  if (isURL(*name)) {
    if (given.size() != 1) {
      return std::unexpected("a URL goes alone");
    }
    return RequestWords{RequestKind::url, {*name}, {}};
  }
  const auto* const word = std::ranges::find(words, *name, &RequestWord::name);
  if (word == words.end()) {
    return std::unexpected(unknown(*name));
  }
  return readWord(*word, given);
}

}  // namespace tallowin
