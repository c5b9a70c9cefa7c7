#include "platform/x11/x11_launcher.h"

#include <fstream>
#include <iterator>

#include "base/unicode.h"
#include "platform/xdg/desktop_entry.h"
#include "platform/xdg/application_index.h"

namespace tallowin {

namespace {

/// What Debian and its relatives call the user's terminal, then one that most systems have. Both take "-e PROGRAM".
constexpr const char* terminals[] = {"x-terminal-emulator", "xterm"};

std::optional<DesktopEntry> readEntry(const std::filesystem::path& path, const XdgEnvironment& environment) {
  if (path.extension() != ".desktop") {
    return std::nullopt;
  }
  std::ifstream file(path, std::ios::binary);
  const std::string text{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
  return parseDesktopEntry(text, localeTags(environment.locale));
}

std::string notAnApplication(const std::filesystem::path& path) {
  return path.string() + " is no desktop entry of an application";
}

}  // namespace

std::optional<std::filesystem::path> X11Launcher::find(std::string_view bundleIdentifier) {
  if (auto file = findNamed(bundleIdentifier)) {
    return file;
  }
  for (const auto name : linuxNamesOf(bundleIdentifier)) {
    if (auto file = findNamed(name)) {
      return file;
    }
  }
  return std::nullopt;
}

std::optional<std::filesystem::path> X11Launcher::findNamed(std::string_view name) {
  const auto index = installed_.current();
  if (const auto* application = index->find(name)) {
    return application->file;
  }
  const auto& folders = installed_.environment().programFolders;
  if (name.find('/') != name.npos) {
    return std::nullopt;
  }
  const auto program = findProgram(name, folders);
  return program ? program : findProgram(lowerCased(name), folders);
}

std::filesystem::path X11Launcher::resolve(const std::filesystem::path& application) {
  const bool isBundle = application.extension() == ".app";
  if (application.empty() || (!isBundle && application.has_parent_path())) {
    return application;
  }
  const bool hasSuffix = isBundle || application.extension() == ".desktop";
  const auto name = (hasSuffix ? application.stem() : application.filename()).string();
  if (auto file = find(name)) {
    return *file;
  }
  const auto index = installed_.current();
  const auto* found = index->named(name);
  if (found == nullptr) {
    found = index->match({name, name, ""});
  }
  return found != nullptr ? found->file : application;
}

std::expected<void, std::string> X11Launcher::open(const std::filesystem::path& path,
                                                   const std::vector<std::string>& arguments) {
  if (path.extension() == ".desktop") {
    const auto entry = readEntry(path, installed_.environment());
    return entry ? openEntry(path, *entry, arguments) : std::unexpected(notAnApplication(path));
  }
  if (path.is_absolute() && findProgram(path.string(), {})) {
    return processes_.launch({.executable = path.string(), .arguments = arguments, .addedEnvironment = {}});
  }
  std::error_code error;
  if (!std::filesystem::exists(path, error)) {
    return std::unexpected("there is no " + path.string());
  }
  return openURL(path.string()) ? std::expected<void, std::string>()
                                : std::unexpected("nothing can open " + path.string());
}

std::expected<void, std::string> X11Launcher::openNewWindow(const std::filesystem::path& path) {
  auto entry = readEntry(path, installed_.environment());
  if (!entry || entry->newWindowExec.empty()) {
    return open(path, {});
  }
  entry->exec = entry->newWindowExec;
  return openEntry(path, *entry, {});
}

std::expected<void, std::string> X11Launcher::openEntry(const std::filesystem::path& path, const DesktopEntry& entry,
                                                        const std::vector<std::string>& arguments) {
  const auto& environment = installed_.environment();
  if (entry.hidden) {
    return std::unexpected(notAnApplication(path));
  }
  auto words = expandExec(entry, path.string(), arguments);
  if (words.empty()) {
    return std::unexpected(path.string() + " does not say what to run");
  }
  if (entry.terminal) {
    for (const auto* name : terminals) {
      if (const auto terminal = findProgram(name, environment.programFolders)) {
        words.insert(words.begin(), {terminal->string(), "-e"});
        break;
      }
    }
  }
  return start(std::move(words));
}

std::expected<void, std::string> X11Launcher::start(std::vector<std::string> words) {
  const auto program = findProgram(words.front(), installed_.environment().programFolders);
  if (!program) {
    return std::unexpected("there is no program " + words.front());
  }
  words.erase(words.begin());
  return processes_.launch({.executable = program->string(), .arguments = std::move(words), .addedEnvironment = {}});
}

bool X11Launcher::openURL(const std::string& url) {
  return start({"xdg-open", url}) || start({"gio", "open", url});
}

std::optional<std::filesystem::path> X11Launcher::iconOf(const std::filesystem::path& entry) {
  const auto read = readEntry(entry, installed_.environment());
  return read ? findIcon(read->icon, installed_.environment()) : std::nullopt;
}

}  // namespace tallowin
