#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "platform/emulated/desktop_operations.h"
#include "platform/emulated/mission_control_behaviour.h"
#include "platform/geometry.h"
#include "platform/main_queue.h"

namespace tallowin {

/// The inner workings of MissionControl: whether it is open, where its thumbnails are, and what pointing at them does.
/// Main thread only.
class MissionControlBar {
 public:
  /// A Space's picture in the bar of its display.
  struct Thumbnail {
    ManagedSpaceID space = 0;
    std::string title;            ///< "Desktop 3" for the third ordinary one of all displays
    CGRect frame;                 ///< on the top of the display
    bool showsBadge = false;      ///< the close badge, where the pointer has rested long enough
    bool hasCloseButton = false;  ///< the badge is an element of its own
  };

  /// `boundsOf` gives the bounds of the display with that identifier.
  MissionControlBar(DesktopOperations& desktops, MainQueue& queue, std::function<CGRect(const std::string&)> boundsOf,
                    MissionControlBehaviour behaviour)
      : desktops_(desktops), queue_(queue), boundsOf_(std::move(boundsOf)), behaviour_(behaviour) {}

  [[nodiscard]] bool isOpen() const { return stage_ == Stage::open; }
  [[nodiscard]] bool isClosed() const { return stage_ == Stage::closed; }

  void toggle();
  void close();

  /// The pointer is here now. After hovering over a desktop's thumbnail for a while that one shows its close button.
  void hover(CGPoint location);
  /// Removes a desktop if the click is on its close badge, else chooses the Space whose thumbnail it is on.
  void click(CGPoint location);

  /// Switches to a Space and closes.
  bool choose(ManagedSpaceID space);
  bool add(const std::string& display) { return behaviour_.hasAddButton && desktops_.addDesktop(display); }
  bool remove(ManagedSpaceID space);

  [[nodiscard]] bool hasAddButton() const { return behaviour_.hasAddButton; }
  [[nodiscard]] std::vector<std::string> displays() const;
  [[nodiscard]] std::vector<Thumbnail> thumbnails(const std::string& display) const;
  /// Where the add button of a display is.
  [[nodiscard]] CGRect addButtonFrame(const std::string& display) const;

 private:
  enum class Stage { closed, opening, open };

  [[nodiscard]] std::optional<Thumbnail> thumbnailAt(CGPoint location) const;

  DesktopOperations& desktops_;
  MainQueue& queue_;
  const std::function<CGRect(const std::string&)> boundsOf_;
  const MissionControlBehaviour behaviour_;

  Stage stage_ = Stage::closed;
  std::optional<ManagedSpaceID> hovered_;  ///< the thumbnail under the pointer
  bool hoveredLongEnough_ = false;
  WorkItem opening_;
  WorkItem hovering_;
};

}  // namespace tallowin
