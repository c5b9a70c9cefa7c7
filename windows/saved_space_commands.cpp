#include "windows/saved_space_commands.h"

namespace tallowin {

namespace {

constexpr auto symbol = "archivebox";

std::string_view description(SavedSpaces::Failure failure) {
  return failure == SavedSpaces::Failure::noWindows ? "This Space has no windows to save"
                                                    : "This Space could not be saved";
}

}  // namespace

Outcome SavedSpaceCommands::saveAndClose(const Space& space) {
  const auto saved = savedSpaces_.save(space);
  if (!saved) {
    const auto message = description(saved.error());
    toasts_.show({std::string(message), std::nullopt, true});
    return Outcome::refused(message);
  }
  const auto apps = std::to_string(saved->apps.size());
  toasts_.show({"Saved " + saved->name + " with " + apps + " apps and closed its windows", symbol});
  savedSpaces_.closeWindows(space);
  return Outcome::done();
}

void SavedSpaceCommands::reopen(const SavedSpace& space) {
  savedSpaces_.restore(space);
  toasts_.show({"Reopening " + space.name, symbol});
}

}  // namespace tallowin
