#include "app/request_words.h"

#include <algorithm>
#include <array>
#include <ranges>
#include <string_view>
#include <utility>

namespace tallowin {

namespace {

/// A word that is understood.
struct Word {
  std::string_view name;
  RequestKind kind;
  std::string_view operands;  ///< as a usage line names them, separated by blanks; optional ones, the last, in brackets
  std::string_view options;   ///< separated by bars, each with the name of its value if it takes one
};

constexpr auto words = std::to_array<Word>({
    {"list", RequestKind::list, "", "--json"},
    {"current", RequestKind::current, "", "--json"},
    {"watch", RequestKind::watch, "", "--json"},
    {"windows", RequestKind::windows, "", "--all|--json"},
    {"saved-spaces", RequestKind::savedSpaces, "", "--json"},
    {"reopen", RequestKind::reopen, "NAME", ""},
    {"pin", RequestKind::pin, "APP SPACE", ""},
    {"unpin", RequestKind::unpin, "APP", ""},
    {"mark", RequestKind::mark, "[LETTER]", ""},
    {"jump", RequestKind::jump, "[LETTER]", ""},
    {"profile", RequestKind::profile, "list|save|use|delete [NAME]", "--json"},
    {"template", RequestKind::layTemplate, "list|apply|import [NAME]", "--json"},
    {"edit", RequestKind::edit, "SPACE",
     "--name TEXT|--symbol SYMBOL|--color #RRGGBB|--note TEXT|--group TEXT|--icon FILE|--json"},
    {"automation", RequestKind::automation, "SPACE [get|set|clear|run] [FILE]", ""},
    {"time", RequestKind::time, "", "--days N|--csv FILE|--json"},
    {"export", RequestKind::exportFile, "FILE", ""},
    {"import", RequestKind::importFile, "FILE", ""},
    {"diagnostics", RequestKind::diagnostics, "", ""},
    {"answer", RequestKind::answer, "BUTTON", ""},
    {"quit", RequestKind::quit, "", ""},
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

std::string usage(const Word& word) {
  std::string text = "it is called so: tallowin " + std::string(word.name);
  if (!word.operands.empty()) {
    text.append(" ").append(word.operands);
  }
  for (const auto& option : split(word.options, '|')) {
    text.append(" [").append(option).append("]");
  }
  return text;
}

bool takesSoMany(const Word& word, std::size_t operands) {
  const auto names = split(word.operands, ' ');
  const auto optional =
      std::ranges::count_if(names, [](const std::string& operand) { return operand.starts_with('['); });
  return operands <= names.size() && operands + static_cast<std::size_t>(optional) >= names.size();
}

bool isOption(std::string_view text) {
  return text.starts_with("--");
}

/// Whether the word takes the option: nothing if not, else whether a value follows it.
std::optional<bool> takesValue(const Word& word, const std::string& option) {
  for (const auto& each : split(word.options, '|')) {
    if (each == option || each.starts_with(option + " ")) {
      return each != option;
    }
  }
  return std::nullopt;
}

std::expected<RequestWords, std::string> readWord(const Word& word, std::span<const std::string> given) {
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

std::expected<RequestWords, std::string> readRequestWords(std::span<const std::string> given) {
  if (given.empty()) {
    return RequestWords{};
  }
  const auto name = std::ranges::find_if_not(given, isOption);
  if (name == given.end() &&
      std::ranges::any_of(words, [&](const Word& word) { return takesValue(word, given.front()).has_value(); })) {
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
  const auto* const word = std::ranges::find(words, *name, &Word::name);
  if (word == words.end()) {
    return std::unexpected(unknown(*name));
  }
  return readWord(*word, given);
}

}  // namespace tallowin
