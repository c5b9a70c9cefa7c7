#pragma once

#include "platform/shown_space.h"

namespace tallowin {

/// What the user hears of a switch. Main thread only.
class Feedback {
 public:
  virtual ~Feedback() = default;

  /// Plays the sound that the setting "switchSound" names and, if "speakSpaceNames" is on, speaks the Space's name.
  virtual void spaceChanged(const ShownSpace& to) = 0;
};

}  // namespace tallowin
