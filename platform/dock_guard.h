#pragma once

#include <functional>
#include <string>

namespace tallowin {

/// Undoes jumps to another Space that a click in the Dock causes, while the setting "dockClickProtection" is on. Main
/// thread only.
class DockGuard {
 public:
  virtual ~DockGuard() = default;

  /// `bounceBack` is told the id of the Space that the user is to be taken back to.
  virtual void setBounceBack(std::function<void(const std::string& spaceID)> bounceBack) = 0;

  /// The Space that the user is in. To be called with the first one, and when settings change.
  virtual void refresh(const std::string& currentSpaceID) = 0;

  /// The active Space has changed. True when a click in the Dock did it and the user is being taken back: nothing else
  /// may react to this change.
  virtual bool spaceChanged(const std::string& toSpaceID) = 0;
};

}  // namespace tallowin
