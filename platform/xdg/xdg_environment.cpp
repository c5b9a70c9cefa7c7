#include "platform/xdg/xdg_environment.h"

#include <cstdlib>
#include <fstream>
#include <iterator>
#include <unistd.h>

#include "platform/xdg/desktop_entry.h"

namespace tallowin {

namespace {

std::vector<std::string> parts(std::string_view list) {
  std::vector<std::string> found;
  while (!list.empty()) {
    const auto end = std::min(list.find(':'), list.size());
    if (end > 0) {
      found.emplace_back(list.substr(0, end));
    }
    list.remove_prefix(std::min(end + 1, list.size()));
  }
  return found;
}

std::vector<std::filesystem::path> absoluteFolders(std::string_view list) {
  std::vector<std::filesystem::path> folders;
  for (const auto& part : parts(list)) {
    if (part.starts_with('/')) {
      folders.emplace_back(part);
    }
  }
  return folders;
}

bool isProgram(const std::filesystem::path& path) {
  std::error_code error;
  return std::filesystem::is_regular_file(path, error) && access(path.c_str(), X_OK) == 0;
}

namespace fs = std::filesystem;

constexpr auto unitName = "tallowin.service";
constexpr auto entryName = "autostart/com.quorvex.Tallowin.desktop";

/// An empty value counts as unset (XDG base directory specification).
std::string variable(const char* name, const std::string& standard) {
  const char* value = std::getenv(name);
  return value != nullptr && *value != '\0' ? value : standard;
}

bool isThere(const fs::path& path) {
  std::error_code error;
  return fs::symlink_status(path, error).type() > fs::file_type::not_found;
}

/// A unit that is a link to the null device is masked, whatever other folders say.
bool isMasked(const fs::path& unit) {
  std::error_code error;
  return fs::read_symlink(unit, error) == "/dev/null";
}

}  // namespace

XdgEnvironment readXdgEnvironment(const std::function<std::optional<std::string>(const char* name)>& variable) {
  const auto text = [&](const char* name, const char* otherwise) {
    auto value = variable(name).value_or("");
    return value.empty() ? std::string(otherwise) : value;
  };
  XdgEnvironment environment;
  environment.home = text("HOME", "/");
  const auto dataHome = text("XDG_DATA_HOME", "");
  environment.dataFolders.push_back(dataHome.starts_with('/') ? std::filesystem::path(dataHome)
                                                              : environment.home / ".local/share");
  for (auto& folder : absoluteFolders(text("XDG_DATA_DIRS", "/usr/local/share:/usr/share"))) {
    environment.dataFolders.push_back(std::move(folder));
  }
  environment.programFolders = absoluteFolders(text("PATH", "/usr/local/bin:/usr/bin:/bin"));
  environment.currentDesktops = parts(text("XDG_CURRENT_DESKTOP", ""));
  for (const auto* name : {"LC_ALL", "LC_MESSAGES", "LANG"}) {
    if (environment.locale.empty()) {
      environment.locale = text(name, "");
    }
  }
  return environment;
}

std::optional<std::string> processVariable(const char* name) {
  const char* value = std::getenv(name);
  return value == nullptr ? std::nullopt : std::optional<std::string>(value);
}

XdgEnvironment processXdgEnvironment() {
  return readXdgEnvironment(processVariable);
}

std::optional<std::filesystem::path> documentsFolder(std::string_view userFolders, const std::filesystem::path& home) {
  constexpr std::string_view key = "XDG_DOCUMENTS_DIR=\"";
  constexpr std::string_view homeFolder = "$HOME/";
  const auto line = userFolders.starts_with(key) ? 0 : userFolders.find("\n" + std::string(key));
  if (line == std::string_view::npos) {
    return std::nullopt;
  }
  auto value = userFolders.substr(userFolders.find('"', line) + 1);
  value = value.substr(0, value.find_first_of("\"\n"));
  if (value.starts_with(homeFolder)) {
    return home / value.substr(homeFolder.size());
  }
  return value.starts_with('/') ? std::optional<std::filesystem::path>(value) : std::nullopt;
}

std::optional<std::filesystem::path> findProgram(std::string_view name,
                                                 const std::vector<std::filesystem::path>& folders) {
  if (name.find('/') != std::string_view::npos) {
    return name.starts_with('/') && isProgram(name) ? std::optional<std::filesystem::path>(name) : std::nullopt;
  }
  for (const auto& folder : folders) {
    if (auto path = folder / name; !name.empty() && isProgram(path)) {
      return path;
    }
  }
  return std::nullopt;
}

std::vector<std::string> localeTags(std::string_view locale) {
  std::string modifier;
  if (const auto at = locale.find('@'); at != std::string_view::npos) {
    modifier = locale.substr(at);
    locale = locale.substr(0, at);
  }
  locale = locale.substr(0, locale.find('.'));
  if (locale.empty() || locale == "C" || locale == "POSIX") {
    return {};
  }
  const std::string whole(locale);
  const std::string language(locale.substr(0, locale.find('_')));
  std::vector<std::string> tags;
  for (const auto& tag : {whole + modifier, whole, language + modifier, language}) {
    if (tags.empty() || tags.back() != tag) {
      tags.push_back(tag);
    }
  }
  return tags;
}

AutostartFolders processAutostartFolders() {
  const auto home = variable("HOME", "/");
  const fs::path configuration = variable("XDG_CONFIG_HOME", home + "/.config");
  AutostartFolders folders{
      {configuration},
      {configuration / "systemd/user", "/etc/systemd/user", "/usr/local/lib/systemd/user", "/usr/lib/systemd/user"}};
  for (const auto& folder : parts(variable("XDG_CONFIG_DIRS", "/etc/xdg"))) {
    folders.configuration.emplace_back(folder);
  }
  return folders;
}

std::optional<fs::path> autostartPlace(const AutostartFolders& folders) {
  for (const auto& folder : folders.units) {
    if (isMasked(folder / unitName)) {
      break;
    }
    if (const auto wanted = folder / "graphical-session.target.wants" / unitName; isThere(wanted)) {
      return wanted;
    }
  }
  for (const auto& folder : folders.configuration) {
    const auto place = folder / entryName;
    if (!isThere(place)) {
      continue;
    }
    std::ifstream file(place);
    const std::string text(std::istreambuf_iterator<char>(file), {});
    const auto entry = parseDesktopEntry(text, {});
    return entry && !entry->hidden ? std::optional(place) : std::nullopt;  // the first one hides the others
  }
  return std::nullopt;
}

}  // namespace tallowin
