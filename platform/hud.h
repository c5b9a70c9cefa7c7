#pragma once

#include "platform/shown_space.h"

namespace tallowin {

/// The pop-up that says where the user has got to. Main thread only.
class HUD {
 public:
  virtual ~HUD() = default;

  /// Shows the Space that has just become active, in place of the one shown before, for as long as the setting
  /// "hudDuration" says; nothing while "hudEnabled" is off.
  virtual void show(const ShownSpace& space) = 0;
};

}  // namespace tallowin
