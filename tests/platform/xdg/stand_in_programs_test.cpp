#include "platform/xdg/stand_in_programs.h"

#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <set>
#include <stdlib.h>
#include <tuple>

namespace tallowin {
namespace {

/// Says what would be started.
class EchoingProcesses : public Processes {
 public:
  std::expected<void, std::string> launch(const ProcessRequest& request) override {
    started = request.executable;
    for (const auto& argument : request.arguments) {
      started += " " + argument;
    }
    started += request.addedEnvironment.empty() ? "" : " $";
    started += request.workingDirectory.empty() ? "" : " in " + request.workingDirectory;
    return {};
  }
  std::expected<std::string, std::string> run(const ProcessRequest& request) override {
    std::ignore = launch(request);
    return started;
  }

  std::string started;
};

TEST(StandInPrograms, TakeTheCallsOfMissingPrograms) {
  const std::set<std::filesystem::path> bare{"/bin/tcsh", "/s/Focus Off", "/s/.hidden", "/s/deep/er"};
  auto full = bare;
  full.insert({"/bin/zsh", "/usr/bin/shortcuts"});
  const struct {
    const std::set<std::filesystem::path>& programs;
    ProcessRequest request;
    const char* expected;
  } cases[] = {
      {bare, {"/bin/zsh", {"-lc", "x y"}, {{"A", "b"}}}, "/bin/fish -lc x y $ in /h"},
      {full, {"/bin/zsh", {"-lc", "x y"}, {}}, "/bin/fish -lc x y in /h"},
      {bare, {"/usr/bin/shortcuts", {"run", "Focus Off"}, {}}, "/s/Focus Off in /h"},
      {full, {"/usr/bin/shortcuts", {"run", "Focus Off"}, {}}, "/usr/bin/shortcuts run Focus Off"},
      {full, {"/usr/bin/shortcuts", {"list"}, {}}, "/usr/bin/shortcuts list"},
      {bare, {"/bin/ls", {"-l"}, {}}, "/bin/ls -l"},
      {bare, {"/usr/bin/shortcuts", {"run", "Gone"}, {}}, "there is no executable file \"Gone\" in /s"},
      {bare, {"/usr/bin/shortcuts", {"run", ".hidden"}, {}}, "there is no executable file \".hidden\" in /s"},
      {bare, {"/usr/bin/shortcuts", {"run", "deep/er"}, {}}, "there is no executable file \"deep/er\" in /s"},
      {bare, {"/usr/bin/shortcuts", {"run", ""}, {}}, "there is no executable file \"\" in /s"},
      {bare, {"/usr/bin/shortcuts", {"run"}, {}}, "shortcuts can be run and listed"},
      {bare, {"/usr/bin/shortcuts", {"view", "x"}, {}}, "shortcuts can be run and listed"},
  };
  for (const auto& [programs, request, expected] : cases) {
    EchoingProcesses processes;
    StandInPrograms standIns(processes, {"/s", [] { return "/bin/fish"; }, [] { return "/h"; },
                                         [&](const auto& path) { return programs.contains(path); }});
    const auto started = standIns.run(request);
    EXPECT_EQ(started ? *started : started.error(), expected);
    EXPECT_EQ(standIns.launch(request).has_value(), started.has_value()) << expected;
  }
}

TEST(StandInPrograms, ShortcutsAreTheExecutableFilesOfAFolder) {
  std::string name = (std::filesystem::temp_directory_path() / "tallowin-test.XXXXXX").string();
  const std::filesystem::path configuration = mkdtemp(name.data());
  const auto folder = configuration / "tallowin/shortcuts";
  EchoingProcesses processes;
  auto machine = standInMachine(configuration);
  const auto isProgram = machine.isProgram;
  machine.isProgram = [&](const std::filesystem::path& path) {
    return path.string().starts_with(folder.string()) && isProgram(path);
  };
  StandInPrograms standIns(processes, machine);
  EXPECT_EQ(standIns.run({"/usr/bin/shortcuts", {"list"}, {}}), "") << "there is no folder";
  std::filesystem::create_directories(folder / "a folder");
  for (const auto* file : {"Zoom", "Focus Off", ".hidden", "notes.txt"}) {
    std::ofstream(folder / file) << "#!/bin/sh\n";
    std::filesystem::permissions(folder / file, std::filesystem::perms(*file == 'n' ? 0600 : 0700));
  }
  EXPECT_EQ(standIns.run({"/usr/bin/shortcuts", {"list"}, {}}), "Focus Off\nZoom\n");
  EXPECT_TRUE(standIns.launch({"/usr/bin/shortcuts", {"run", "Zoom"}, {}}));
  EXPECT_EQ(processes.started, (folder / "Zoom").string() + " in " + machine.home());
  std::filesystem::remove_all(configuration);
}

TEST(StandInPrograms, TheShellIsOneThatRunsCommands) {
  const auto exists = [](const std::filesystem::path& path) { return path != "/gone/bash"; };
  EXPECT_EQ(chooseShell({"/usr/bin/fish", "/bin/bash"}, exists), "/usr/bin/fish");
  EXPECT_EQ(chooseShell({"/gone/bash", "/usr/sbin/nologin", "/bin/tcsh", "/bin/bash"}, exists), "/bin/bash");
  EXPECT_EQ(chooseShell({"/bin/false"}, exists), "/bin/sh");
}

}  // namespace
}  // namespace tallowin
