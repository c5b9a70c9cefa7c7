#include "windows/mark_commands.h"

#include <algorithm>

#include "windows/space_lookup.h"

namespace tallowin {

namespace {

constexpr auto noWindow = "No window to mark";

}  // namespace

MarkCommands::Fault MarkCommands::fail(const std::string& message) {
  services_.toasts.show({message, std::nullopt});
  return message;
}

MarkCommands::Fault MarkCommands::setMark() {
  const auto window = services_.mover.frontWindow();
  if (!window) {
    return fail(noWindow);
  }
  services_.toasts.show({"Press a letter to mark this window", std::nullopt});
  services_.marks.captureLetter([this, window = *window](const std::string& letter) { mark(window, letter); });
  return std::nullopt;
}

MarkCommands::Fault MarkCommands::setMark(const std::string& letter) {
  const auto window = services_.mover.frontWindow();
  if (!window) {
    return fail(noWindow);
  }
  mark(*window, letter);
  return std::nullopt;
}

void MarkCommands::mark(const FrontWindow& window, const std::string& letter) {
  services_.marks.set(letter, {window.id, window.pid});
  services_.toasts.show({"Marked as " + letter, "bookmark.fill"});
}

void MarkCommands::jumpToMark() {
  services_.marks.captureLetter([this](const std::string& letter) { jumpToMark(letter); });
}

MarkCommands::Fault MarkCommands::jumpToMark(const std::string& letter) {
  const auto mark = services_.marks.find(letter);
  if (!mark) {
    return fail("Nothing is marked as " + letter);
  }
  const FrontWindow window{mark->id, mark->pid, {}};
  const auto elsewhere = spaceToSwitchTo(window.id);
  if (!elsewhere) {
    services_.mover.raise(window);
    return std::nullopt;
  }
  services_.switchTo(*elsewhere);
  services_.mover.raiseAfterSwitch(window, elsewhere->managedID);
  return std::nullopt;
}

/// The first Space that shows a window; nothing when one that does is active, or none is known.
std::optional<Space> MarkCommands::spaceToSwitchTo(WindowNumber window) const {
  const auto& snapshot = services_.watcher.fresh();
  std::vector<Space> spaces;
  for (const auto id : services_.desktop.spacesOfWindow(window).value_or(std::vector<ManagedSpaceID>())) {
    if (const auto space = spaceWithManagedID(snapshot, id)) {
      spaces.push_back(*space);
    }
  }
  return spaces.empty() || std::ranges::any_of(spaces, &Space::isActive) ? std::nullopt : std::optional(spaces.front());
}

}  // namespace tallowin
