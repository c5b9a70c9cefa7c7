#include "app/front/front_arguments.h"

#include <array>
#include <string_view>

namespace tallowin {

namespace {

/// Options for whoever becomes the instance, without and with a value after them.
constexpr std::array<std::string_view, 2> startFlags = {"--demo", "--verbose"};
constexpr std::array<std::string_view, 4> startOptions = {"--platform", "--port", "--scenario", "--settings"};
/// Options that ask for a process of their own. All others are for the instance to understand, or to refuse.
constexpr std::array<std::string_view, 11> modeOptions = {"--probe",   "--switch",  "--capture", "--settings-list",
                                                          "--get",     "--set",     "--unset",   "--simulate",
                                                          "--journal", "--version", "--help"};

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
  bool optionsEnded = false;
  for (; *arguments != nullptr; ++arguments) {
    const std::string_view argument = *arguments;
    optionsEnded = optionsEnded || argument == "--";
    if (optionsEnded) {
      read.request.emplace_back(argument);
      continue;
    }
    const bool hasValue = contains(startOptions, argument) || argument == "--home";
    if (hasValue && arguments[1] == nullptr) {
      read.forInstance = false;  // a mistake, which the whole program words
    } else if (hasValue) {
      ++arguments;
      read.home = argument == "--home" ? *arguments : read.home;
    } else if (!contains(startFlags, argument)) {
      read.forInstance = read.forInstance && !contains(modeOptions, argument);
      read.request.emplace_back(argument);
    }
  }
  return read;
}

}  // namespace tallowin
