#pragma once

#include <filesystem>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "platform/processes.h"

namespace tallowin {

/// Child processes where two programs that automations call are other ones. "/bin/zsh" stands for the user's own shell,
/// whether or not zsh is installed; it gets the same arguments. "/usr/bin/shortcuts", where it is not installed, stands
/// for a folder of executable files: "run NAME" starts one of them, "list" prints their names. Both begin in the home
/// folder. All other programs are started as they are asked for.
class StandInPrograms : public Processes {
 public:
  struct Machine {
    std::filesystem::path shortcutsFolder;
    // Asked when something is started: finding out whose shell it is takes as long as much of a short command.
    std::function<std::string()> shell;  ///< absolute path
    std::function<std::string()> home;   ///< the same, of an existing folder
    /// Whether there is a program with this absolute path.
    std::function<bool(const std::filesystem::path&)> isProgram;
  };

  StandInPrograms(Processes& processes, Machine machine) : processes_(processes), machine_(std::move(machine)) {}

  std::expected<void, std::string> launch(const ProcessRequest& request) override;
  std::expected<std::string, std::string> run(const ProcessRequest& request) override;

 private:
  [[nodiscard]] bool replacesShortcuts(const ProcessRequest& request) const;
  /// What is started for a request; the error says why nothing is.
  [[nodiscard]] std::expected<ProcessRequest, std::string> translated(const ProcessRequest& request) const;
  [[nodiscard]] std::string shortcutNames() const;

  Processes& processes_;
  const Machine machine_;
};

/// This machine, with the shortcuts in the folder "tallowin/shortcuts" under `configuration`.
[[nodiscard]] StandInPrograms::Machine standInMachine(const std::filesystem::path& configuration);

/// The user's home folder if it is there, else the root: a program cannot begin in a folder that is not there.
[[nodiscard]] std::string homeFolder();

/// The first of the candidates that is a program and takes "-lc COMMAND"; "/bin/sh" without one.
[[nodiscard]] std::string chooseShell(const std::vector<std::string>& candidates,
                                      const std::function<bool(const std::filesystem::path&)>& isProgram);

}  // namespace tallowin
