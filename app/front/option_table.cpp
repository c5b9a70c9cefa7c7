#include "app/front/option_table.h"

namespace tallowin {

FrontArguments readFrontArguments(const char* const* arguments) {
  FrontArguments read;
  bool optionsEnded = false;
  for (; *arguments != nullptr; ++arguments) {
    const std::string_view argument = *arguments;
    optionsEnded = optionsEnded || argument == "--";
    const auto* const option = optionsEnded ? nullptr : findOption(argument);
    if (option == nullptr || option->kind != OptionKind::start) {
      read.forInstance = read.forInstance && (option == nullptr || option->kind == OptionKind::word);
      read.request.emplace_back(argument);
    } else if (!option->values().empty() && arguments[1] == nullptr) {
      read.forInstance = false;  // a mistake, which the whole program words
    } else if (!option->values().empty()) {
      ++arguments;
      read.forInstance = read.forInstance && !isDiagnostic(*arguments);
      read.home = argument == "--home" ? *arguments : read.home;
    }
  }
  return read;
}

}  // namespace tallowin
