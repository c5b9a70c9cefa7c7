#include "platform/x11/x11_workspace.h"

#include <algorithm>
#include <fstream>
#include <iterator>

#include "base/unicode.h"
#include "platform/xdg/application_index.h"
#include "platform/xdg/desktop_entry.h"

namespace tallowin {

namespace {

/// The window to make active with its application; 0 when it has no ordinary one.
xcb_window_t windowToActivate(const X11WindowSnapshot& screen, const X11Application& application) {
  xcb_window_t anywhere = 0;
  for (const auto number : application.windows) {
    const auto* window = screen.find(number);
    if (window == nullptr || window->layer != 0) {
      continue;
    }
    if (screen.isOnScreen(*window)) {
      return number;
    }
    anywhere = anywhere == 0 ? number : anywhere;
  }
  return anywhere;
}

/// What Debian and its relatives call the user's terminal, then one that most systems have. Both take "-e PROGRAM".
constexpr const char* terminals[] = {"x-terminal-emulator", "xterm"};

std::string contentOf(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

std::optional<DesktopEntry> readEntry(const std::filesystem::path& path, const XdgEnvironment& environment) {
  if (path.extension() != ".desktop") {
    return std::nullopt;
  }
  return parseDesktopEntry(contentOf(path), localeTags(environment.locale));
}

}  // namespace

std::vector<RunningApplication> X11Workspace::runningApplications() {
  std::vector<RunningApplication> running;
  const auto snapshot = applications_.latest();
  for (const auto& application : snapshot->applications) {
    running.push_back(applications_.running(application));
  }
  return running;
}

std::optional<RunningApplication> X11Workspace::runningApplicationWithProcessIdentifier(ProcessID pid) {
  const auto snapshot = applications_.latest();
  const auto* application = snapshot->find(pid);
  return application == nullptr ? std::nullopt : std::optional(applications_.running(*application));
}

std::vector<RunningApplication> X11Workspace::runningApplicationsWithBundleIdentifier(std::string_view bundle) {
  std::vector<RunningApplication> running;
  const auto snapshot = applications_.latest();
  for (const auto& application : snapshot->applications) {
    if (application.bundleIdentifier == bundle) {
      running.push_back(applications_.running(application));
    }
  }
  return running;
}

std::optional<RunningApplication> X11Workspace::frontmostApplication() {
  const auto active = applications_.activeWindow();
  const auto snapshot = active == 0 ? nullptr : applications_.latest();
  const auto* application = snapshot == nullptr ? nullptr : snapshot->owner(active);
  return application == nullptr ? std::nullopt : std::optional(applications_.running(*application));
}

bool X11Workspace::hide(ProcessID pid) {
  const auto snapshot = applications_.refresh();
  const auto* application = snapshot->find(pid);
  if (application == nullptr) {
    return false;
  }
  std::vector<xcb_window_t> shown;
  for (const auto number : application->windows) {
    const auto* window = snapshot->screen.find(number);
    if (window->layer == 0 && !window->hidden) {
      shown.push_back(number);
    }
  }
  if (!shown.empty()) {
    actions_.minimize(shown);
    applications_.setHidden(pid, std::move(shown));
  }
  return true;
}

bool X11Workspace::unhide(ProcessID pid) {
  const auto snapshot = applications_.latest();
  for (const auto window : applications_.takeHidden(pid)) {
    actions_.restore(window);
  }
  return snapshot->find(pid) != nullptr;
}

bool X11Workspace::activateWithOptions(ProcessID pid) {
  const auto snapshot = applications_.refresh();
  const auto* application = snapshot->find(pid);
  if (application == nullptr) {
    return false;
  }
  auto window = windowToActivate(snapshot->screen, *application);
  if (const auto main = applications_.takeMainWindow(pid); snapshot->screen.find(main) != nullptr) {
    window = main;
  }
  return window != 0 && actions_.activate(window);
}

void X11Workspace::openApplicationAtURL(const std::filesystem::path& application,
                                        const OpenConfiguration& configuration, OpenCompletion completion) {
  const auto file = resolve(application);
  const bool another = configuration.createsNewApplicationInstance || !configuration.arguments.empty();
  const auto running = another ? std::nullopt : processOf(file);
  std::expected<void, std::string> result;
  const bool newWindow = running && configuration.opensNewWindow;
  if (!running || newWindow || (configuration.activates && !activateWithOptions(*running))) {
    result = open(file, configuration.arguments, newWindow);
  }
  queue_.async([result = std::move(result), completion = std::move(completion)] { completion(result); });
}

/// The process of an application that runs.
std::optional<ProcessID> X11Workspace::processOf(const std::filesystem::path& application) {
  const auto snapshot = applications_.latest();
  const auto found = std::ranges::find_if(snapshot->applications, [&](const X11Application& running) {
    return URLForApplicationWithBundleIdentifier(running.bundleIdentifier) == application;
  });
  return found != snapshot->applications.end() ? std::optional(found->pid) : std::nullopt;
}

bool X11Workspace::openURL(std::string_view url) {
  return start({"xdg-open", std::string(url)}) || start({"gio", "open", std::string(url)});
}

std::optional<std::string> X11Workspace::iconForFile(const std::filesystem::path& file) {
  const auto entry = readEntry(file, installed_.environment());
  const auto picture = entry ? findIcon(entry->icon, installed_.environment()) : std::nullopt;
  return picture ? std::optional(contentOf(*picture)) : std::nullopt;
}

std::optional<std::filesystem::path> X11Workspace::URLForApplicationWithBundleIdentifier(std::string_view bundle) {
  if (auto file = findNamed(bundle)) {
    return file;
  }
  for (const auto name : linuxNamesOf(bundle)) {
    if (auto file = findNamed(name)) {
      return file;
    }
  }
  return std::nullopt;
}

std::optional<std::filesystem::path> X11Workspace::findNamed(std::string_view name) {
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

std::filesystem::path X11Workspace::resolve(const std::filesystem::path& application) {
  const bool isBundle = application.extension() == ".app";
  if (application.empty() || (!isBundle && application.has_parent_path())) {
    return application;
  }
  const bool hasSuffix = isBundle || application.extension() == ".desktop";
  const auto name = (hasSuffix ? application.stem() : application.filename()).string();
  if (auto file = URLForApplicationWithBundleIdentifier(name)) {
    return *file;
  }
  const auto index = installed_.current();
  const auto* found = index->named(name);
  if (found == nullptr) {
    found = index->match({name, name, ""});
  }
  return found != nullptr ? found->file : application;
}

std::expected<void, std::string> X11Workspace::open(const std::filesystem::path& path,
                                                    const std::vector<std::string>& arguments, bool newWindow) {
  if (path.extension() == ".desktop") {
    auto entry = readEntry(path, installed_.environment());
    if (!entry || entry->hidden) {
      return std::unexpected(path.string() + " is no desktop entry of an application");
    }
    if (newWindow && !entry->newWindowExec.empty()) {
      entry->exec = entry->newWindowExec;
    }
    return openEntry(path, *entry, arguments);
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

std::expected<void, std::string> X11Workspace::openEntry(const std::filesystem::path& path, const DesktopEntry& entry,
                                                         const std::vector<std::string>& arguments) {
  auto words = expandExec(entry, path.string(), arguments);
  if (words.empty()) {
    return std::unexpected(path.string() + " does not say what to run");
  }
  if (entry.terminal) {
    for (const auto* name : terminals) {
      if (const auto terminal = findProgram(name, installed_.environment().programFolders)) {
        words.insert(words.begin(), {terminal->string(), "-e"});
        break;
      }
    }
  }
  return start(std::move(words));
}

std::expected<void, std::string> X11Workspace::start(std::vector<std::string> words) {
  const auto program = findProgram(words.front(), installed_.environment().programFolders);
  if (!program) {
    return std::unexpected("there is no program " + words.front());
  }
  words.erase(words.begin());
  return processes_.launch({.executable = program->string(), .arguments = std::move(words), .addedEnvironment = {}});
}

}  // namespace tallowin
