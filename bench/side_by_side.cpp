#include "bench/side_by_side.h"

#include <chrono>
#include <cstdlib>
#include <fcntl.h>
#include <iostream>
#include <spawn.h>
#include <sstream>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace tallowin::bench {

namespace {

/// What the switch before still has the instance do, such as read the windows, would be measured with the next subject.
constexpr auto untilQuiet = std::chrono::milliseconds(200);

}  // namespace

std::vector<std::string> wordsFor(const std::string& command, std::uint32_t index) {
  std::vector<std::string> words;
  std::istringstream stream(command);
  for (std::string word; stream >> word;) {
    for (const auto& [mark, value] : {std::pair("%i", index), std::pair("%n", index + 1)}) {
      if (const auto at = word.find(mark); at != std::string::npos) {
        word.replace(at, 2, std::to_string(value));
      }
    }
    words.push_back(word);
  }
  return words;
}

pid_t start(std::vector<std::string> words, int output, Errors errors) {
  std::vector<char*> pointers;
  for (auto& word : words) {
    pointers.push_back(word.data());
  }
  pointers.push_back(nullptr);
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  if (output >= 0) {
    posix_spawn_file_actions_adddup2(&actions, output, STDOUT_FILENO);
  } else {
    posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
  }
  if (errors == Errors::hidden) {
    posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
  }
  pid_t process = 0;
  const int error = posix_spawnp(&process, pointers[0], &actions, nullptr, pointers.data(), environ);
  posix_spawn_file_actions_destroy(&actions);
  return error == 0 ? process : 0;
}

bool run(std::vector<std::string> words, Errors errors) {
  const auto process = start(std::move(words), -1, errors);
  int status = 0;
  return process != 0 && ::waitpid(process, &status, 0) == process && status == 0;
}

Turns::Turns(int argc, char** argv) {
  runs = argc > 2 ? std::strtoul(argv[1], nullptr, 10) : 0;
  if (runs == 0) {
    std::cerr << "usage: " << argv[0] << " RUNS COMMAND...\n";
    std::exit(64);
  }
  commands.assign(argv + 2, argv + argc);
}

int Turns::measure(const std::function<std::optional<double>(std::size_t subject, std::size_t turn)>& take,
                   std::size_t subjects) const {
  Samples samples;
  for (std::size_t turn = 0; turn < runs; ++turn) {
    for (std::size_t subject = 0; subject < subjects; ++subject) {
      if (subject < commands.size() && commands[subject].empty()) {
        continue;
      }
      std::this_thread::sleep_for(untilQuiet);
      const auto value = take(subject, turn);
      if (!value) {
        std::cerr << "cannot be measured: " << (subject < commands.size() ? commands[subject] : "the peer") << '\n';
        return EXIT_FAILURE;
      }
      samples.add(subject, *value);
    }
  }
  samples.print();
  return EXIT_SUCCESS;
}

void Samples::print() const {
  for (const auto& [subject, value] : samples_) {
    std::cout << subject + 1 << ' ' << value << '\n';
  }
}

}  // namespace tallowin::bench
