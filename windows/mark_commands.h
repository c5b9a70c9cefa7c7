#pragma once

#include <functional>
#include <optional>
#include <string>

#include "core/space_watcher.h"
#include "platform/desktop.h"
#include "platform/toasts.h"
#include "windows/window_marks.h"
#include "windows/window_mover.h"

namespace tallowin {

/// The user's commands about marks, with what the user is told of them. Main thread only.
class MarkCommands {
 public:
  struct Services {
    WindowMarks& marks;
    WindowMover& mover;
    Desktop& desktop;
    Toasts& toasts;
    SpaceWatcher& watcher;
    std::function<void(const Space&)> switchTo;  ///< switches as this program's own doing
  };

  explicit MarkCommands(Services services) : services_(std::move(services)) {}
  MarkCommands(const MarkCommands&) = delete;
  MarkCommands& operator=(const MarkCommands&) = delete;

  /// What went wrong, in the words that the user was told.
  using Fault = std::optional<std::string>;

  /// Marks the front window, as it is now, with the letter that the user presses next, or with a given one (as
  /// WindowMarks::letter() answers it).
  Fault setMark();
  Fault setMark(const std::string& letter);

  /// Goes to the window marked with the letter that the user presses next, or with a given one: switches to its Space,
  /// if that is not active, and raises it, unless the user has gone elsewhere by then. A window that no longer exists
  /// changes nothing.
  void jumpToMark();
  Fault jumpToMark(const std::string& letter);

 private:
  Fault fail(const std::string& message);
  void mark(const FrontWindow& window, const std::string& letter);
  [[nodiscard]] std::optional<Space> spaceToSwitchTo(WindowNumber window) const;

  const Services services_;
};

}  // namespace tallowin
