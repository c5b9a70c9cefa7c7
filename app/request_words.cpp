#include "app/request_words.h"

#include <algorithm>
#include <array>
#include <ranges>
#include <string_view>
#include <utility>

namespace tallowin {

namespace {

constexpr auto words = std::to_array<RequestWord>({
    {"list", RequestKind::list, "", "--json|--names|--urls", "List the Spaces."},
    {"current", RequestKind::current, "", "--json", "Name the active Space."},
    {"watch", RequestKind::watch, "", "--json", "Print the state, and a line for every change."},
    {"windows", RequestKind::windows, "", "--all|--json", "List the windows of the active Space, or of all."},
    {"mark", RequestKind::mark, "[LETTER]", "", "Mark the front window with a letter, or with the next one pressed."},
    {"jump", RequestKind::jump, "[LETTER]", "", "Go to the window marked with it."},
    {"pin", RequestKind::pin, "APP SPACE", "", "Send new windows of an application to a Space from now on."},
    {"unpin", RequestKind::unpin, "APP", "", "Let them stay where they open."},
    {"saved-spaces", RequestKind::savedSpaces, "", "--json|--names", "List the Spaces that were saved and closed."},
    {"reopen", RequestKind::reopen, "SAVED-SPACE", "", "Open the applications of a saved Space again."},
    {"edit", RequestKind::edit, "SPACE",
     "--name TEXT|--symbol SYMBOL|--color #RRGGBB|--note TEXT|--group TEXT|--icon FILE|--json",
     "Change what is said of a Space; an empty text takes it away."},
    {"automation", RequestKind::automation, "SPACE [get|set|clear|run] [FILE]", "",
     "Show, set, clear or run what is done on entering and leaving a Space, as JSON."},
    {"profile", RequestKind::profile, "list|save|use|delete [PROFILE]", "--json|--names", "Keep whole sets of names."},
    {"template", RequestKind::layTemplate, "list|apply|import [TEMPLATE]", "--json|--names",
     "Name a number of Spaces at once; import takes a file."},
    {"time", RequestKind::time, "", "--days N|--csv FILE|--json", "Print the time spent in each Space."},
    {"export", RequestKind::exportFile, "FILE", "", "Write everything that you have configured to a file."},
    {"import", RequestKind::importFile, "FILE", "", "Take such a file over."},
    {"diagnostics", RequestKind::diagnostics, "", "", "Print a report for support requests."},
    {"answer", RequestKind::answer, "BUTTON", "", "Answer a question that Tallowin asks."},
    {"quit", RequestKind::quit, "", "", "Tell the running Tallowin to quit."},
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

bool takesSoMany(const RequestWord& word, std::size_t operands) {
  const auto names = operandsOf(word);
  const auto optional =
      std::ranges::count_if(names, [](const std::string& operand) { return operand.starts_with('['); });
  return operands <= names.size() && operands + static_cast<std::size_t>(optional) >= names.size();
}

bool isOption(std::string_view text) {
  return text.starts_with("--");
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
  RequestWords read{word.kind, {}, {}};
  bool named = false;
  for (std::size_t i = 0; i < given.size(); ++i) {
    if (!isOption(given[i])) {
      if (std::exchange(named, true)) {
        read.operands.push_back(given[i]);
      }
      continue;
    }
    const auto valued = takesValue(word, given[i]);
    if (!valued || (*valued && i + 1 == given.size())) {
      return std::unexpected(usage(word));
    }
    read.options[given[i]] = *valued ? given[i + 1] : "";
    i += *valued ? 1 : 0;
  }
  return takesSoMany(word, read.operands.size()) ? std::expected<RequestWords, std::string>(read)
                                                 : std::unexpected(usage(word));
}

std::string unknown(const std::string& argument) {
  return "unknown argument \"" + argument + "\"; --help lists what there is";
}

bool isURL(const std::string& text) {
  return text.find("://") != std::string::npos;
}

}  // namespace

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
