#pragma once

#include <expected>
#include <span>
#include <string>
#include <vector>

namespace tallowin {

/// What the running instance can be asked for.
enum class RequestKind {
  start,    ///< nothing more than that it runs
  url,      ///< to perform a tallowin:// URL
  list,     ///< the Spaces
  current,  ///< the active Space
  watch,    ///< the Spaces, and every change
  quit,     ///< to end
};

/// The words of a request, understood.
struct RequestWords {
  RequestKind kind = RequestKind::start;
  bool json = false;                  ///< data as JSON
  std::vector<std::string> operands;  ///< what follows the word, or the URL
  bool operator==(const RequestWords&) const = default;
};

/// Reads the words. The error is one line that says what is wrong and what would be right.
[[nodiscard]] std::expected<RequestWords, std::string> readRequestWords(std::span<const std::string> words);

}  // namespace tallowin
