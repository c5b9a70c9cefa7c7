#pragma once

#include <vector>

#include "core/space.h"
#include "platform/toasts.h"
#include "platform/windows.h"
#include "windows/space_contents.h"

namespace tallowin {

/// Minimises every window of a Space, and undoes that. In memory only. Main thread only.
class SpaceMinimizer {
 public:
  explicit SpaceMinimizer(Windows& windows) : windows_(windows) {}

  /// Minimises the windows on a Space and answers how many; undo() brings back these and no others. Windows that cannot
  /// be reached, or are minimised already, do not count. When there were none, undo() does what it would have done.
  std::size_t minimizeAll(const Space& space, const SpaceContents& contents);

  /// Whether there is something to undo.
  [[nodiscard]] bool canUndo() const { return !lastMinimized_.empty(); }

  /// Brings back what minimizeAll() minimised last, as far as it still exists.
  void undo();

 private:
  Windows& windows_;
  std::vector<WindowRef> lastMinimized_;
};

/// What the user is told when so many windows were minimised.
[[nodiscard]] Toast minimizedToast(std::size_t count);

}  // namespace tallowin
