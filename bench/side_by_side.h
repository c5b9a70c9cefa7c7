#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <sys/types.h>
#include <utility>
#include <vector>

/// Measuring programs that take turns, so that a busy machine slows them all down alike. What they print are samples
/// for rows.sh: lines of a subject's number, from 1, and a value.
namespace tallowin::bench {

/// The words of a command, in which %i stands for a desktop's index from 0 and %n for its number from 1.
std::vector<std::string> wordsFor(const std::string& command, std::uint32_t index);

/// What becomes of a program's error messages.
enum class Errors { shown, hidden };

/// Starts a program with its output at `output`, or nowhere if that is negative; its process id, or 0.
pid_t start(std::vector<std::string> words, int output = -1, Errors errors = Errors::shown);

/// Starts a program and waits for its end; whether it succeeded.
bool run(std::vector<std::string> words, Errors errors = Errors::shown);

/// What has been measured. Printed when all of it has, as half a measurement would look like a missing program.
class Samples {
 public:
  void add(std::size_t subject, double value) { samples_.emplace_back(subject, value); }
  void print() const;

 private:
  std::vector<std::pair<std::size_t, double>> samples_;
};

/// What a measuring program is told: RUNS COMMAND... An empty command stands for a program that is not installed.
struct Turns {
  /// Ends the process with a line on how it is used unless both are there.
  Turns(int argc, char** argv);

  /// Measures each subject but the empty ones so many times by turns and prints the samples (milliseconds).
  /// EXIT_FAILURE, and which one it was, as soon as one cannot be measured.
  [[nodiscard]] int measure(const std::function<std::optional<double>(std::size_t subject, std::size_t turn)>& take,
                            std::size_t subjects) const;

  std::size_t runs = 0;
  std::vector<std::string> commands;
};

}  // namespace tallowin::bench
