#include "platform/xdg/exec_line.h"

#include <algorithm>
#include <optional>
#include <utility>

namespace tallowin {

namespace {

constexpr std::string_view deprecatedCodes = "dDnNvm";

/// The value of a field code inside a word; nothing for an unknown one.
std::optional<std::string> codeValue(char code, const DesktopEntry& entry, const std::string& file,
                                     const std::vector<std::string>& arguments) {
  switch (code) {
    case '%':
      return "%";
    case 'c':
      return entry.name;
    case 'k':
      return file;
    case 'f':
    case 'u':
    case 'F':
    case 'U':
      return arguments.empty() ? "" : arguments.front();
    default:
      return deprecatedCodes.find(code) == deprecatedCodes.npos ? std::nullopt : std::optional<std::string>("");
  }
}

/// What codes that stand alone become: any number of words. Nothing for every other word.
std::optional<std::vector<std::string>> standAlone(const std::string& word, const DesktopEntry& entry,
                                                   const std::vector<std::string>& arguments) {
  if (word == "%F" || word == "%U") {
    return arguments;
  }
  if (word == "%f" || word == "%u") {
    return arguments.empty() ? std::vector<std::string>() : std::vector{arguments.front()};
  }
  if (word == "%i") {
    return entry.icon.empty() ? std::vector<std::string>() : std::vector<std::string>{"--icon", entry.icon};
  }
  if (word.size() == 2 && word[0] == '%' && deprecatedCodes.find(word[1]) != deprecatedCodes.npos) {
    return std::vector<std::string>();
  }
  return std::nullopt;
}

bool takesArguments(const std::vector<std::string>& words) {
  return std::ranges::any_of(words, [](const std::string& word) {
    for (std::size_t i = 0; i + 1 < word.size(); ++i) {
      if (word[i] == '%') {
        if (std::string_view("fFuU").find(word[++i]) != std::string_view::npos) {
          return true;
        }
      }
    }
    return false;
  });
}

/// Appends the quoted text that begins after an opening quote; the position after the closing one, or npos.
std::size_t readQuoted(std::string_view exec, std::size_t at, std::string& word) {
  for (; at < exec.size(); ++at) {
    if (exec[at] == '"') {
      return at + 1;
    }
    if (exec[at] == '\\' && at + 1 < exec.size()) {
      ++at;
    }
    word += exec[at];
  }
  return exec.npos;
}

}  // namespace

std::vector<std::string> splitExec(std::string_view exec) {
  std::vector<std::string> words;
  std::optional<std::string> word;
  std::size_t at = 0;
  while (at < exec.size()) {
    const char c = exec[at];
    if (c == ' ' || c == '\t' || c == '\n') {
      if (word) {
        words.push_back(*std::exchange(word, std::nullopt));
      }
      ++at;
      continue;
    }
    word = word.value_or("");
    if (c == '"') {
      at = readQuoted(exec, at + 1, *word);
      if (at == exec.npos) {
        return {};
      }
    } else {
      *word += c;
      ++at;
    }
  }
  if (word) {
    words.push_back(*word);
  }
  return words;
}

std::vector<std::string> expandExec(const DesktopEntry& entry, const std::string& file,
                                    const std::vector<std::string>& arguments) {
  const auto words = splitExec(entry.exec);
  std::vector<std::string> expanded;
  for (const auto& word : words) {
    if (auto several = standAlone(word, entry, arguments)) {
      std::ranges::move(*several, std::back_inserter(expanded));
      continue;
    }
    std::string text;
    for (std::size_t i = 0; i < word.size(); ++i) {
      if (word[i] != '%') {
        text += word[i];
        continue;
      }
      const auto value = i + 1 < word.size() ? codeValue(word[++i], entry, file, arguments) : std::nullopt;
      if (!value) {
        return {};
      }
      text += *value;
    }
    expanded.push_back(std::move(text));
  }
  if (!words.empty() && !takesArguments(words)) {
    std::ranges::copy(arguments, std::back_inserter(expanded));
  }
  return expanded;
}

}  // namespace tallowin
