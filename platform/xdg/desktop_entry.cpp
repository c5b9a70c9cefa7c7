#include "platform/xdg/desktop_entry.h"

#include <algorithm>
#include <map>
#include <utility>

#include "base/unicode.h"

namespace tallowin {

namespace {

using Values = std::map<std::string, std::string, std::less<>>;

std::string_view trimmed(std::string_view text) {
  const auto isSpace = [](char c) { return c == ' ' || c == '\t' || c == '\r'; };
  while (!text.empty() && isSpace(text.front())) {
    text.remove_prefix(1);
  }
  while (!text.empty() && isSpace(text.back())) {
    text.remove_suffix(1);
  }
  return text;
}

/// The keys of the first group with this header as they are written, languages included: "Name[de]".
std::optional<Values> group(std::string_view text, std::string_view header) {
  std::optional<Values> values;
  while (!text.empty()) {
    const auto end = std::min(text.find('\n'), text.size());
    const auto line = trimmed(text.substr(0, end));
    text.remove_prefix(std::min(end + 1, text.size()));
    if (line.starts_with('[')) {
      if (values) {
        break;
      }
      if (line == header) {
        values.emplace();
      }
    } else if (const auto equals = line.find('='); values && equals != line.npos && !line.starts_with('#')) {
      values->emplace(trimmed(line.substr(0, equals)), trimmed(line.substr(equals + 1)));
    }
  }
  return values;
}

std::string_view written(const Values& values, std::string_view key) {
  const auto found = values.find(key);
  return found == values.end() ? std::string_view() : std::string_view(found->second);
}

/// The character that an escape sequence stands for; the character itself for unknown ones.
char unescaped(char c) {
  switch (c) {
    case 's':
      return ' ';
    case 'n':
      return '\n';
    case 't':
      return '\t';
    case 'r':
      return '\r';
    default:
      return c;
  }
}

std::string textOf(std::string_view value) {
  std::string text;
  for (std::size_t i = 0; i < value.size(); ++i) {
    const bool escape = value[i] == '\\' && i + 1 < value.size();
    text += escape ? unescaped(value[++i]) : value[i];
  }
  return text;
}

std::vector<std::string> listOf(std::string_view value) {
  std::vector<std::string> items;
  std::string item;
  for (std::size_t i = 0; i <= value.size(); ++i) {
    if (i == value.size() || value[i] == ';') {
      if (!item.empty()) {
        items.push_back(std::exchange(item, {}));
      }
    } else {
      const bool escape = value[i] == '\\' && i + 1 < value.size();
      item += escape ? unescaped(value[++i]) : value[i];
    }
  }
  return items;
}

std::string localised(const Values& values, const std::string& key, const std::vector<std::string>& tags) {
  for (const auto& tag : tags) {
    auto tagged = key;
    tagged += '[';
    tagged += tag;
    tagged += ']';
    if (const auto value = written(values, tagged); !value.empty()) {
      return textOf(value);
    }
  }
  return textOf(written(values, key));
}

/// The Exec line of the action that opens another window. Its name is a convention of applications.
std::string newWindowExec(std::string_view text, const std::vector<std::string>& actions) {
  for (const auto& action : actions) {
    auto name = lowerCased(action);
    std::erase_if(name, [](char c) { return c == '-' || c == '_'; });
    const auto values =
        name == "newwindow" || name == "newemptywindow" ? group(text, "[Desktop Action " + action + "]") : std::nullopt;
    if (values) {
      return textOf(written(*values, "Exec"));
    }
  }
  return "";
}

bool intersect(const std::vector<std::string>& a, const std::vector<std::string>& b) {
  return std::ranges::any_of(a, [&](const std::string& item) { return std::ranges::find(b, item) != b.end(); });
}

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

bool DesktopEntry::isOffered(const std::vector<std::string>& currentDesktops) const {
  return !hidden && !noDisplay && (onlyShowIn.empty() || intersect(onlyShowIn, currentDesktops)) &&
         !intersect(notShowIn, currentDesktops);
}

std::optional<DesktopEntry> parseDesktopEntry(std::string_view text, const std::vector<std::string>& localeTags) {
  const auto values = group(text, "[Desktop Entry]");
  if (!values) {
    return std::nullopt;
  }
  const auto isTrue = [&](std::string_view key) { return written(*values, key) == "true"; };
  DesktopEntry entry;
  entry.hidden = isTrue("Hidden");
  // An entry that only hides another one need not say what it is.
  if (written(*values, "Type") != "Application" && !entry.hidden) {
    return std::nullopt;
  }
  entry.name = localised(*values, "Name", localeTags);
  entry.exec = textOf(written(*values, "Exec"));
  entry.newWindowExec = newWindowExec(text, listOf(written(*values, "Actions")));
  entry.tryExec = textOf(written(*values, "TryExec"));
  entry.icon = localised(*values, "Icon", localeTags);
  entry.startupWMClass = textOf(written(*values, "StartupWMClass"));
  entry.onlyShowIn = listOf(written(*values, "OnlyShowIn"));
  entry.notShowIn = listOf(written(*values, "NotShowIn"));
  entry.noDisplay = isTrue("NoDisplay");
  entry.terminal = isTrue("Terminal");
  return entry;
}

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
