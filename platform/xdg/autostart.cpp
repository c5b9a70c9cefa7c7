#include "platform/xdg/autostart.h"

#include <cstdlib>
#include <fstream>
#include <iterator>

#include "platform/xdg/desktop_entry.h"

namespace tallowin {

namespace {

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

AutostartFolders processAutostartFolders() {
  const auto home = variable("HOME", "/");
  const fs::path configuration = variable("XDG_CONFIG_HOME", home + "/.config");
  AutostartFolders folders{
      {configuration},
      {configuration / "systemd/user", "/etc/systemd/user", "/usr/local/lib/systemd/user", "/usr/lib/systemd/user"}};
  auto rest = variable("XDG_CONFIG_DIRS", "/etc/xdg");
  for (std::size_t end = 0; end != std::string::npos; rest.erase(0, end + 1)) {
    end = rest.find(':');
    folders.configuration.emplace_back(rest.substr(0, end));
    if (end == std::string::npos) {
      break;
    }
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
