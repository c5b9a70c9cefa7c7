#include "app/front/front_arguments.h"

#include <array>
#include <string_view>

namespace tallowin {

namespace {

/// Options for whoever becomes the instance, without and with a value after them.
constexpr std::array<std::string_view, 1> startFlags = {"--verbose"};
constexpr std::array<std::string_view, 2> startOptions = {"--platform", "--scenario"};
/// Options that the instance understands.
constexpr std::array<std::string_view, 2> requestFlags = {"--json", "--all"};

template <std::size_t count>
bool contains(const std::array<std::string_view, count>& list, std::string_view text) {
  for (const auto entry : list) {
    if (entry == text) {
      return true;
    }
  }
  return false;
}

}  // namespace

FrontArguments readFrontArguments(const char* const* arguments) {
  FrontArguments read;
  for (; *arguments != nullptr; ++arguments) {
    const std::string_view argument = *arguments;
    const bool hasValue = contains(startOptions, argument) || argument == "--home";
    if (hasValue && arguments[1] == nullptr) {
      read.forInstance = false;  // a mistake, which the whole program words
    } else if (hasValue) {
      ++arguments;
      read.home = argument == "--home" ? *arguments : read.home;
    } else if (!contains(startFlags, argument)) {
      const bool isOption = argument.substr(0, 2) == "--" || argument == "classic";
      read.forInstance = read.forInstance && (!isOption || contains(requestFlags, argument));
      read.request.emplace_back(argument);
    }
  }
  return read;
}

}  // namespace tallowin
