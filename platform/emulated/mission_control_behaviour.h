#pragma once

#include "platform/main_queue.h"

namespace tallowin {

/// What differs between one Mission Control and another, failures included.
struct MissionControlBehaviour {
  Duration openingTime = std::chrono::milliseconds{250};
  Duration hoverTime = std::chrono::milliseconds{400};  ///< until a thumbnail shows its close button
  bool opens = true;
  bool hasAddButton = true;
  bool hasCloseButtons = true;  ///< without, a close badge can be clicked but is no accessibility element
  bool operator==(const MissionControlBehaviour&) const = default;
};

}  // namespace tallowin
