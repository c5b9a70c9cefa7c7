#pragma once

#include <functional>
#include <string>

namespace tallowin {

/// What the program notices of the user's pointer and fingers. Main thread only.
class Triggers {
 public:
  virtual ~Triggers() = default;

  /// `pulled` is told each time the user asks for the overview without a key: at the screen's edges ("hotCorner",
  /// "notchHover") or on the trackpad ("fourFingerTap").
  virtual void setOverviewHandler(std::function<void()> pulled) = 0;

  /// Follows the settings. To be called at the start and when they have changed.
  virtual void refresh() = 0;

  /// While the setting "dockClickProtection" is on, jumps to another Space that a click in the Dock causes are undone:
  /// `bounceBack` is told the id of the Space that the user is to be taken back to.
  virtual void setBounceBack(std::function<void(const std::string& spaceID)> bounceBack) = 0;

  /// The Space that the user is in. To be called with the first one, and when settings change.
  virtual void refreshDockGuard(const std::string& currentSpaceID) = 0;

  /// The active Space has changed; `isOurs`: by what this program has done. True when a click in the Dock did it and
  /// the user is being taken back: nothing else may react to this change.
  virtual bool spaceChanged(const std::string& toSpaceID, bool isOurs) = 0;
};

}  // namespace tallowin
