#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string_view>

namespace tallowin {

/// Ends the process, which a fuzzer takes for a finding, unless the condition holds. `what` says what should hold.
inline void require(bool holds, const char* what) {
  if (!holds) {
    static_cast<void>(std::fprintf(stderr, "broken: %s\n", what));
    std::abort();
  }
}

/// The fuzzer's input as bytes of text, which it need not be.
inline std::string_view inputText(const std::uint8_t* data, std::size_t size) {
  return {reinterpret_cast<const char*>(data), size};
}

}  // namespace tallowin

/// What is called with every input. Answers 0.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);
