#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <sys/types.h>
#include <vector>

/// Measuring programs that take turns, so that a busy machine slows them all down alike.
namespace tallowin::bench {

/// The words of a command, in which %i stands for a desktop's index from 0 and %n for its number from 1.
std::vector<std::string> wordsFor(const std::string& command, std::uint32_t index);

/// Starts a program with its output at `output`, or nowhere if that is negative; its process id, or 0.
pid_t start(std::vector<std::string> words, int output = -1);

/// Prints median, 95th percentile and ratio to the first command for the times (milliseconds) of each command. False
/// when a command was never measured.
bool print(const std::vector<std::string>& commands, std::vector<std::vector<double>> times);

}  // namespace tallowin::bench
