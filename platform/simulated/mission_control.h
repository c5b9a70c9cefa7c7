#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/accessibility.h"
#include "platform/geometry.h"
#include "platform/main_queue.h"
#include "platform/simulated/desktop_state.h"

namespace tallowin {

class SimulatedSpaces;

/// What differs between one Mission Control and another, failures included.
struct MissionControlBehaviour {
  Duration openingTime = std::chrono::milliseconds{250};
  Duration hoverTime = std::chrono::milliseconds{400};  ///< until a thumbnail shows its close button
  bool opens = true;
  bool hasAddButton = true;
  bool hasCloseButtons = true;  ///< without, a close badge can be clicked but is no accessibility element
  bool operator==(const MissionControlBehaviour&) const = default;
};

/// The simulated Mission Control: the bar with the desktops of each display, as the accessibility elements of the Dock
/// and as places on the screen that take clicks. Main thread only.
class MissionControl {
 public:
  /// A Space's picture in the bar of its display.
  struct Thumbnail {
    ManagedSpaceID space = 0;
    std::string title;            ///< "Desktop 3" for the third ordinary one of all displays
    CGRect frame;                 ///< on the top of the display
    bool showsBadge = false;      ///< the close badge, where the pointer has rested long enough
    bool hasCloseButton = false;  ///< the badge is an element of its own
  };

  /// The Dock notification that opens Mission Control, or closes it when it is open or opening.
  static constexpr auto awakeNotification = "com.apple.expose.awake";

  MissionControl(SimulatedSpaces& spaces, const DesktopState& state, MainQueue& queue,
                 MissionControlBehaviour behaviour)
      : spaces_(spaces), state_(state), queue_(queue), behaviour_(behaviour) {}
  MissionControl(const MissionControl&) = delete;
  MissionControl& operator=(const MissionControl&) = delete;

  /// Takes a Dock notification; others than the one above do nothing.
  void notify(std::string_view notification);

  /// Offers a key press. True when it was taken: Escape, while Mission Control is open or opening, closes it.
  bool keyDown(VirtualKeyCode keyCode);

  /// The pointer was moved by an event. After resting on a desktop's thumbnail for a while it shows the close badge.
  void pointerMoved(CGPoint location);

  /// Offers a click, made by releasing the left button. True when it was taken: while Mission Control is open it takes
  /// every click; one on the close badge of a hovered thumbnail removes that desktop, one elsewhere on a thumbnail
  /// chooses that Space.
  bool clicked(CGPoint location);

  [[nodiscard]] bool isOpen() const { return stage_ == Stage::open; }

  /// The Dock's application element: its icons and, while it is open, Mission Control with a "Spaces Bar" for each
  /// display. This object must outlive it.
  [[nodiscard]] AXUIElement dockElement();

  /// What its elements do and show.
  bool choose(ManagedSpaceID space);  ///< switches to a Space and closes
  bool add(const std::string& display);
  bool remove(ManagedSpaceID space);
  [[nodiscard]] bool hasAddButton() const { return behaviour_.hasAddButton; }
  [[nodiscard]] std::vector<std::string> displays() const;
  [[nodiscard]] std::vector<Thumbnail> thumbnails(const std::string& display) const;
  /// Where the add button of a display is.
  [[nodiscard]] CGRect addButtonFrame(const std::string& display) const;

 private:
  enum class Stage { closed, opening, open };

  void close();
  [[nodiscard]] std::optional<Thumbnail> thumbnailAt(CGPoint location) const;
  /// Where the thumbnail at this place of the display's bar is.
  [[nodiscard]] CGRect frameAt(const std::string& display, std::size_t place) const;

  SimulatedSpaces& spaces_;
  const DesktopState& state_;
  MainQueue& queue_;
  const MissionControlBehaviour behaviour_;

  Stage stage_ = Stage::closed;
  std::optional<ManagedSpaceID> hovered_;  ///< the thumbnail under the pointer
  bool hoveredLongEnough_ = false;
  WorkItem opening_;
  WorkItem hovering_;
};

}  // namespace tallowin
