#include "bench/side_by_side.h"

#include <algorithm>
#include <cmath>
#include <fcntl.h>
#include <iomanip>
#include <iostream>
#include <spawn.h>
#include <sstream>
#include <unistd.h>

namespace tallowin::bench {

namespace {

double quantile(const std::vector<double>& sorted, double part) {
  return sorted[static_cast<std::size_t>(std::lround(part * static_cast<double>(sorted.size() - 1)))];
}

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

pid_t start(std::vector<std::string> words, int output) {
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
  pid_t process = 0;
  const int error = posix_spawnp(&process, pointers[0], &actions, nullptr, pointers.data(), environ);
  posix_spawn_file_actions_destroy(&actions);
  return error == 0 ? process : 0;
}

bool print(const std::vector<std::string>& commands, std::vector<std::vector<double>> times) {
  std::cout << std::fixed << std::setprecision(2);
  double first = 0;
  for (std::size_t i = 0; i < commands.size(); ++i) {
    if (times[i].empty()) {
      std::cerr << "never measured: " << commands[i] << '\n';
      return false;
    }
    std::ranges::sort(times[i]);
    const double median = quantile(times[i], 0.5);
    first = i == 0 ? median : first;
    std::cout << "median " << median << " ms  p95 " << quantile(times[i], 0.95) << " ms  " << median / first
              << " x the first  n=" << times[i].size() << "  " << commands[i] << '\n';
  }
  return true;
}

}  // namespace tallowin::bench
