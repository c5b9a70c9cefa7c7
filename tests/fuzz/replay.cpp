// replay FUZZER FOLDER...: gives every file of the folders to a fuzzer, once, without libFuzzer. What fuzzers have
// found stays in the corpus, so that no compiler lets it come back.

#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <map>
#include <string>

#include "tests/fuzz/fuzzing.h"

// The build renames every fuzzer's function to the fuzzer's name, and lists the names in fuzzers.inc.
#define FUZZER(name) extern "C" int name(const std::uint8_t* data, std::size_t size);
#include "fuzzers.inc"
#undef FUZZER

namespace {

using Fuzzer = int (*)(const std::uint8_t* data, std::size_t size);

const std::map<std::string, Fuzzer> fuzzers = {
#define FUZZER(name) {#name, name},
#include "fuzzers.inc"
#undef FUZZER
};

}  // namespace

int main(int argc, char** argv) {
  int count = 0;
  for (int i = 2; i < argc; ++i) {
    for (const auto& entry : std::filesystem::directory_iterator(argv[i])) {
      std::cout << entry.path().string() << std::endl;  // which stays behind when the fuzzer ends the process
      std::ifstream file(entry.path(), std::ios::binary);
      const std::string bytes{std::istreambuf_iterator<char>(file), {}};
      fuzzers.at(argv[1])(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
      ++count;
    }
  }
  return count > 0 ? 0 : 1;
}
