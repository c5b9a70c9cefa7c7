#pragma once

#include <filesystem>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "platform/processes.h"

namespace tallowin {

/// Child processes on systems that lack two programs which automations call: "/bin/zsh" is played by the user's own
/// shell, which gets the same arguments, and "/usr/bin/shortcuts" by a folder of executable files: "run NAME" starts
/// one of them, "list" prints their names. Where these programs are installed, and for all others, nothing is replaced.
class StandInPrograms : public Processes {
 public:
  struct Machine {
    std::filesystem::path shortcutsFolder;
    std::string shell;  ///< absolute path
    /// Whether there is a program with this absolute path.
    std::function<bool(const std::filesystem::path&)> isProgram;
  };

  StandInPrograms(Processes& processes, Machine machine) : processes_(processes), machine_(std::move(machine)) {}

  std::expected<void, std::string> launch(const ProcessRequest& request) override;
  std::expected<std::string, std::string> run(const ProcessRequest& request) override;

 private:
  [[nodiscard]] bool replaces(const ProcessRequest& request, const char* program) const;
  /// What is started for a request; the error says why nothing is.
  [[nodiscard]] std::expected<ProcessRequest, std::string> translated(const ProcessRequest& request) const;
  [[nodiscard]] std::string shortcutNames() const;

  Processes& processes_;
  const Machine machine_;
};

/// This machine, with the shortcuts in the folder "tallowin/shortcuts" under `configuration`.
[[nodiscard]] StandInPrograms::Machine standInMachine(const std::filesystem::path& configuration);

/// The first of the candidates that is a program and takes "-lc COMMAND"; "/bin/sh" without one.
[[nodiscard]] std::string chooseShell(const std::vector<std::string>& candidates,
                                      const std::function<bool(const std::filesystem::path&)>& isProgram);

}  // namespace tallowin
