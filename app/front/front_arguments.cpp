#include "app/front/front_arguments.h"

#include <array>
#include <string_view>

namespace tallowin {

namespace {

/// Options for whoever becomes or starts the instance, without and with a value after them.
constexpr std::array<std::string_view, 3> startFlags = {"--demo", "--no-start", "--verbose"};
constexpr std::array<std::string_view, 4> startOptions = {"--platform", "--port", "--scenario", "--settings"};
/// What asks for a process of its own wherever it stands, as another option's value too.
constexpr std::array<std::string_view, 3> diagnosticModes = {"--probe", "--switch", "--capture"};
/// Options that ask for one. All others are for the instance to understand, or to refuse.
constexpr std::array<std::string_view, 8> modeOptions = {"--settings-list", "--get",     "--set",     "--unset",
                                                         "--simulate",      "--journal", "--version", "--help"};

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
      read.forInstance = read.forInstance && !contains(diagnosticModes, *arguments);
      read.home = argument == "--home" ? *arguments : read.home;
    } else if (!contains(startFlags, argument)) {
      read.forInstance = read.forInstance && !contains(modeOptions, argument) && !contains(diagnosticModes, argument);
      read.request.emplace_back(argument);
    }
  }
  return read;
}

}  // namespace tallowin
