#include "windows/saved_space_commands.h"

namespace tallowin {

namespace {

constexpr auto symbol = "archivebox";

Toast failed(SavedSpaces::Failure failure) {
  return {failure == SavedSpaces::Failure::noWindows ? "This Space has no windows to save"
                                                     : "This Space could not be saved",
          std::nullopt, true};
}

}  // namespace

void SavedSpaceCommands::saveAndClose(const Space& space) {
  const auto saved = savedSpaces_.saveAndClose(space);
  toasts_.show(saved ? Toast{"Saved " + saved->name + " with " + std::to_string(saved->apps.size()) +
                                 " apps and closed its windows",
                             symbol}
                     : failed(saved.error()));
}

void SavedSpaceCommands::reopen(const SavedSpace& space) {
  savedSpaces_.restore(space);
  toasts_.show({"Reopening " + space.name, symbol});
}

}  // namespace tallowin
