#include "windows/focus_memory.h"

#include <algorithm>

namespace tallowin {

void FocusMemory::leaving(const Space& space) {
  const auto front = services_.workspace.frontmostApplication();
  if (!front || front->pid == services_.system.processIdentifier()) {
    return;
  }
  if (const auto window = services_.windows.focused(front->pid)) {
    lastWindow_.insert_or_assign(space.id, WindowRef{*window, front->pid});
  }
}

void FocusMemory::entered(const Space& space, const SpaceContents& contents) {
  waiting_.cancel();
  if (services_.settings.get(setting::restoreFocus)) {
    waiting_ = services_.mainQueue.after(delay, [this, space, &contents] { restore(space, contents); });
  }
}

std::optional<WindowRef> FocusMemory::lastWindow(const std::string& spaceID) const {
  const auto found = lastWindow_.find(spaceID);
  return found != lastWindow_.end() ? std::optional(found->second) : std::nullopt;
}

void FocusMemory::restore(const Space& space, const SpaceContents& contents) {
  const auto active = services_.desktop.activeSpace();
  if (active && *active != space.managedID) {
    return;
  }
  const auto remembered = lastWindow(space.id);
  const auto windows = contents.windows(space.managedID);
  const auto window = std::ranges::find_if(windows, [&](const WindowInfo& candidate) {
    return remembered && candidate.id == remembered->id && candidate.pid == remembered->pid;
  });
  if (window != windows.end() && !focusIsAmong(windows) && !focusIsOn(space.managedID)) {
    services_.mover.raise({window->id, window->pid, window->frame});
  }
}

/// Whether the user works there in a window that came after the windows were listed.
bool FocusMemory::focusIsOn(ManagedSpaceID space) const {
  const auto front = services_.workspace.frontmostApplication();
  const auto focused = front ? services_.windows.focused(front->pid) : std::nullopt;
  const auto spaces = focused ? services_.desktop.spacesOfWindow(*focused) : std::nullopt;
  return spaces && std::ranges::find(*spaces, space) != spaces->end();
}

bool FocusMemory::focusIsAmong(const std::vector<WindowInfo>& windows) const {
  const auto front = services_.workspace.frontmostApplication();
  const bool hasWindowHere =
      front && std::ranges::any_of(windows, [&](const WindowInfo& window) { return window.pid == front->pid; });
  const auto focused = hasWindowHere ? services_.windows.focused(front->pid) : std::nullopt;
  return focused && std::ranges::any_of(windows, [&](const WindowInfo& window) { return window.id == *focused; });
}

}  // namespace tallowin
