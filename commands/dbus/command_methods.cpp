#include "commands/dbus/command_methods.h"

#include <algorithm>
#include <type_traits>

#include "commands/scripting/scripting_bridge.h"

namespace tallowin {

namespace {

using Argument = CommandMethod::Argument;
using Maker = SpaceCommand (*)(const PropertyList& arguments);

constexpr Argument spaceArgument{"s", "space"};

template <typename Command, typename... Commands>
consteval std::size_t indexAmong(const std::variant<Commands...>* /*vocabulary*/) {
  const bool same[] = {std::is_same_v<Command, Commands>...};
  return static_cast<std::size_t>(std::ranges::find(same, true) - std::begin(same));
}

template <typename Command>
constexpr std::size_t indexOf = indexAmong<Command>(static_cast<const SpaceCommand*>(nullptr));

std::string text(const PropertyList& argument) {
  return argument.get<std::string>();
}

template <typename Command>
constexpr CommandMethod plain(std::string_view name) {
  return {name, indexOf<Command>, false, {}, [](const PropertyList&) -> SpaceCommand { return Command{}; }};
}

template <typename Command>
constexpr CommandMethod onSpace(std::string_view name) {
  const Maker make = [](const PropertyList& arguments) -> SpaceCommand {
    return Command{ScriptingBridge::ref(arguments[0])};
  };
  return {name, indexOf<Command>, false, {spaceArgument}, make};
}

template <typename Command>
constexpr CommandMethod onSpaceWithText(std::string_view name, std::string_view textName) {
  const Maker make = [](const PropertyList& arguments) -> SpaceCommand {
    return Command{ScriptingBridge::ref(arguments[0]), text(arguments[1])};
  };
  return {name, indexOf<Command>, false, {spaceArgument, Argument{"s", textName}}, make};
}

template <typename Command>
constexpr CommandMethod onSpaceWithoutText(std::string_view name) {
  const Maker make = [](const PropertyList& arguments) -> SpaceCommand {
    return Command{ScriptingBridge::ref(arguments[0]), std::nullopt};
  };
  return {name, indexOf<Command>, true, {spaceArgument}, make};
}

template <typename Command>
constexpr CommandMethod onFlag(std::string_view name, std::string_view flagName) {
  const Maker make = [](const PropertyList& arguments) -> SpaceCommand { return Command{arguments[0].get<bool>()}; };
  return {name, indexOf<Command>, false, {Argument{"b", flagName}}, make};
}

template <typename Command>
constexpr CommandMethod onName(std::string_view name) {
  const Maker make = [](const PropertyList& arguments) -> SpaceCommand { return Command{text(arguments[0])}; };
  return {name, indexOf<Command>, false, {Argument{"s", "name"}}, make};
}

constexpr CommandMethod commandTable[] = {
    onSpace<command::SwitchTo>("SwitchTo"),
    onFlag<command::Step>("Step", "right"),
    onSpace<command::MoveWindow>("MoveWindow"),
    onFlag<command::MoveWindowStep>("MoveWindowStep", "right"),
    onSpaceWithText<command::Rename>("Rename", "name"),
    onSpaceWithoutText<command::Rename>("AskForName"),
    onSpaceWithText<command::Note>("Note", "text"),
    onSpaceWithoutText<command::Note>("AskForNote"),
    onSpace<command::Setup>("Setup"),
    onName<command::Profile>("Profile"),
    onName<command::Template>("Template"),
    onFlag<command::Windows>("Windows", "allSpaces"),
    onSpace<command::RemoveDesktop>("RemoveDesktop"),
    onSpace<command::Notes>("Notes"),
    onFlag<command::Step2D>("Step2D", "up"),
    plain<command::Back>("Back"),
    plain<command::Overview>("Overview"),
    plain<command::OpenSettings>("Settings"),
    plain<command::Diagnostics>("Diagnostics"),
    plain<command::SaveLayout>("SaveLayout"),
    plain<command::RestoreLayout>("RestoreLayout"),
    plain<command::Eject>("Eject"),
    plain<command::Launcher>("Launcher"),
    plain<command::ToggleScratchpad>("Scratchpad"),
    plain<command::MinimizeAll>("MinimizeAll"),
    plain<command::UndoMinimize>("UndoMinimize"),
    plain<command::SaveAndClose>("SaveAndClose"),
    plain<command::AddDesktop>("AddDesktop"),
    plain<command::DemoTour>("DemoTour"),
};

/// Whether each command has its one method, in the vocabulary's order.
consteval bool everyCommandHasOneMethod() {
  std::size_t next = 0;
  for (const auto& method : commandTable) {
    if (!method.withoutText && method.command != next++) {
      return false;
    }
  }
  return next == std::variant_size_v<SpaceCommand>;
}
static_assert(everyCommandHasOneMethod());

}  // namespace

std::span<const CommandMethod> commandMethods() {
  return commandTable;
}

}  // namespace tallowin
