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

}  // namespace tallowin
