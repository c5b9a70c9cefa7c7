#pragma once

#include <array>
#include <cstddef>
#include <span>
#include <string_view>

#include "commands/space_command.h"
#include "platform/property_list.h"

namespace tallowin {

/// The way in which other programs give one command: a method, named after the command.
struct CommandMethod {
  struct Argument {
    std::string_view type;  ///< "s" or "b"; empty for none
    std::string_view name;
  };

  std::string_view name;
  std::size_t command;  ///< the index of what it makes in SpaceCommand
  /// The command's text can be left out, which no argument can say: this method is the one that does.
  bool withoutText;
  std::array<Argument, 2> arguments;
  /// What it stands for, of arguments that have these types.
  SpaceCommand (*make)(const PropertyList& arguments);
};

/// One for every command, in the vocabulary's order; behind those whose text may be absent, one for that.
[[nodiscard]] std::span<const CommandMethod> commandMethods();

}  // namespace tallowin
