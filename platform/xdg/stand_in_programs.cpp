#include "platform/xdg/stand_in_programs.h"

#include <algorithm>
#include <cstdlib>
#include <iterator>
#include <pwd.h>
#include <set>
#include <string_view>
#include <unistd.h>

#include "platform/xdg/xdg_environment.h"

namespace tallowin {

namespace {

constexpr auto shellProgram = "/bin/zsh";
constexpr auto shortcutsProgram = "/usr/bin/shortcuts";

/// What accounts without a login have for a shell, and shells whose "-l" must stand alone.
constexpr std::string_view unsuitableShells[] = {"nologin", "false", "true", "csh", "tcsh"};

bool isProgramFile(const std::filesystem::path& path) {
  return findProgram(path.string(), {}).has_value();
}

std::string userShell() {
  std::vector<std::string> shells;
  if (const auto* variable = std::getenv("SHELL")) {
    shells.emplace_back(variable);
  }
  const auto* user = ::getpwuid(::getuid());
  if (user != nullptr && user->pw_shell != nullptr) {
    shells.emplace_back(user->pw_shell);
  }
  return chooseShell(shells, isProgramFile);
}

bool isFileName(const std::string& name) {
  return !name.starts_with('.') && !name.empty() && name.find('/') == name.npos;
}

}  // namespace

std::expected<void, std::string> StandInPrograms::launch(const ProcessRequest& request) {
  const auto other = translated(request);
  return other ? processes_.launch(*other) : std::unexpected(other.error());
}

std::expected<std::string, std::string> StandInPrograms::run(const ProcessRequest& request) {
  if (replacesShortcuts(request) && request.arguments == std::vector<std::string>{"list"}) {
    return shortcutNames();
  }
  const auto other = translated(request);
  return other ? processes_.run(*other) : std::unexpected(other.error());
}

bool StandInPrograms::replacesShortcuts(const ProcessRequest& request) const {
  return request.executable == shortcutsProgram && !machine_.isProgram(shortcutsProgram);
}

std::expected<ProcessRequest, std::string> StandInPrograms::translated(const ProcessRequest& request) const {
  auto other = request;
  if (request.executable == shellProgram) {
    other.executable = machine_.shell();
    other.workingDirectory = machine_.home();
  } else if (replacesShortcuts(request)) {
    const bool isRun = request.arguments.size() == 2 && request.arguments[0] == "run";
    if (!isRun) {
      return std::unexpected("shortcuts can be run and listed");
    }
    const auto& name = request.arguments[1];
    const auto file = machine_.shortcutsFolder / name;
    if (!isFileName(name) || !machine_.isProgram(file)) {
      return std::unexpected("there is no executable file \"" + name + "\" in " + machine_.shortcutsFolder.string());
    }
    other.executable = file.string();
    other.arguments.clear();
    other.workingDirectory = machine_.home();
  }
  return other;
}

std::string StandInPrograms::shortcutNames() const {
  std::set<std::string> names;
  std::error_code error;
  auto file = std::filesystem::directory_iterator(machine_.shortcutsFolder, error);
  for (; !error && file != std::filesystem::directory_iterator(); file.increment(error)) {
    if (auto name = file->path().filename().string(); isFileName(name) && machine_.isProgram(file->path())) {
      names.insert(std::move(name));
    }
  }
  std::string lines;
  for (const auto& name : names) {
    lines += name + '\n';
  }
  return lines;
}

StandInPrograms::Machine standInMachine(const std::filesystem::path& configuration) {
  return {configuration / "tallowin/shortcuts", userShell, homeFolder, isProgramFile};
}

std::string homeFolder() {
  const auto* home = std::getenv("HOME");
  std::error_code error;
  return home != nullptr && std::filesystem::is_directory(home, error) ? home : "/";
}

std::string chooseShell(const std::vector<std::string>& candidates,
                        const std::function<bool(const std::filesystem::path&)>& isProgram) {
  const auto suits = [&](const std::string& shell) {
    const auto name = std::filesystem::path(shell).filename().string();
    return std::ranges::find(unsuitableShells, name) == std::end(unsuitableShells) && isProgram(shell);
  };
  const auto found = std::ranges::find_if(candidates, suits);
  return found != candidates.end() ? *found : "/bin/sh";
}

}  // namespace tallowin
