#include "platform/x11/x11_launcher.h"

#include <fstream>
#include <iterator>

#include "base/unicode.h"
#include "platform/xdg/exec_line.h"
#include "platform/xdg/icon_lookup.h"

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

}  // namespace

std::optional<std::filesystem::path> X11Launcher::find(std::string_view bundleIdentifier) {
  const auto index = installed_.current();
  if (const auto* application = index->find(bundleIdentifier)) {
    return application->file;
  }
  const auto& folders = installed_.environment().programFolders;
  if (bundleIdentifier.find('/') != bundleIdentifier.npos) {
    return std::nullopt;
  }
  const auto program = findProgram(bundleIdentifier, folders);
  return program ? program : findProgram(lowerCased(bundleIdentifier), folders);
}

std::expected<void, std::string> X11Launcher::open(const std::filesystem::path& path,
                                                   const std::vector<std::string>& arguments) {
  if (path.extension() == ".desktop") {
    return openEntry(path, arguments);
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

std::expected<void, std::string> X11Launcher::openEntry(const std::filesystem::path& path,
                                                        const std::vector<std::string>& arguments) {
  const auto& environment = installed_.environment();
  const auto entry = readEntry(path, environment);
  if (!entry || entry->hidden) {
    return std::unexpected(path.string() + " is no desktop entry of an application");
  }
  auto words = expandExec(*entry, path.string(), arguments);
  if (words.empty()) {
    return std::unexpected(path.string() + " does not say what to run");
  }
  if (entry->terminal) {
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
  return start({"xdg-open", url}).has_value();
}

std::optional<std::filesystem::path> X11Launcher::iconOf(const std::filesystem::path& entry) {
  const auto read = readEntry(entry, installed_.environment());
  return read ? findIcon(read->icon, installed_.environment()) : std::nullopt;
}

}  // namespace tallowin
