// replay FUZZER FOLDER...: gives every file of the folders to a fuzzer, once, without libFuzzer. What fuzzers have
// found stays in the corpus, so that no compiler lets it come back.

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <string>
#include <vector>

#include "tests/fuzz/fuzzing.h"

// The build renames every fuzzer's function to the fuzzer's name, and lists the names in fuzzers.inc.
#define FUZZER(name) extern "C" int name(const std::uint8_t* data, std::size_t size);
#include "fuzzers.inc"
#undef FUZZER

namespace {

using Fuzzer = int (*)(const std::uint8_t* data, std::size_t size);

struct Entry {
  std::string_view name;
  Fuzzer run;
};

constexpr Entry fuzzers[] = {
#define FUZZER(name) {#name, name},
#include "fuzzers.inc"
#undef FUZZER
};

std::string content(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

/// How many files there were.
int replay(Fuzzer run, const std::filesystem::path& folder) {
  int count = 0;
  for (const auto& entry : std::filesystem::directory_iterator(folder)) {
    std::cout << entry.path().string() << std::endl;  // which stays behind when the fuzzer ends the process
    const auto bytes = content(entry.path());
    run(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
    ++count;
  }
  return count;
}

}  // namespace

int main(int argc, char** argv) {
  const std::vector<std::string> arguments(argv + 1, argv + argc);
  const auto* const fuzzer = std::ranges::find(fuzzers, arguments.empty() ? "" : arguments[0], &Entry::name);
  int count = 0;
  if (fuzzer != std::end(fuzzers)) {
    for (std::size_t i = 1; i < arguments.size(); ++i) {
      count += replay(fuzzer->run, arguments[i]);
    }
  }
  return count > 0 ? 0 : 1;
}
