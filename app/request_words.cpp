#include "app/request_words.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace tallowin {

namespace {

constexpr std::string_view jsonFlag = "--json";

/// A word that is understood.
struct Word {
  std::string_view name;
  RequestKind kind;
  std::string_view operands;  ///< as a usage line names them, separated by blanks
  bool takesJSON;
};

constexpr auto words = std::to_array<Word>({
    {"list", RequestKind::list, "", true},
    {"current", RequestKind::current, "", true},
    {"watch", RequestKind::watch, "", true},
    {"quit", RequestKind::quit, "", false},
});

std::size_t count(std::string_view operands) {
  return operands.empty() ? 0 : static_cast<std::size_t>(std::ranges::count(operands, ' ')) + 1;
}

std::string usage(const Word& word) {
  std::string text = "tallowin " + std::string(word.name);
  if (!word.operands.empty()) {
    text.append(" ").append(word.operands);
  }
  return word.takesJSON ? text + " [--json]" : text;
}

bool isURL(const std::string& text) {
  return text.find("://") != std::string::npos;
}

}  // namespace

std::expected<RequestWords, std::string> readRequestWords(std::span<const std::string> given) {
  RequestWords read;
  std::vector<std::string> plain;
  for (const auto& word : given) {
    if (word == jsonFlag) {
      read.json = true;
    } else {
      plain.push_back(word);
    }
  }
  if (plain.empty()) {
    return read.json ? std::unexpected("--json goes with list, current or watch")
                     : std::expected<RequestWords, std::string>(read);
  }
  if (isURL(plain.front())) {
    if (given.size() != 1) {
      return std::unexpected("a URL goes alone");
    }
    return RequestWords{RequestKind::url, false, {plain.front()}};
  }
  const auto* const word = std::ranges::find(words, plain.front(), &Word::name);
  if (word == words.end()) {
    return std::unexpected("unknown argument \"" + plain.front() + "\"; --help lists what there is");
  }
  read.kind = word->kind;
  read.operands.assign(plain.begin() + 1, plain.end());
  if (read.operands.size() != count(word->operands) || (read.json && !word->takesJSON)) {
    return std::unexpected("it is called so: " + usage(*word));
  }
  return read;
}

}  // namespace tallowin
