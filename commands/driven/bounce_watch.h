#pragma once

#include <cstdint>
#include <map>
#include <string>

#include "core/space.h"
#include "platform/clock.h"
#include "platform/log.h"

namespace tallowin {

/// Notices when the Dock returns to the Space it came from right after an instant switch. Main thread only.
class BounceWatch {
 public:
  BounceWatch(const Clock& clock, Log& log) : clock_(clock), log_(log) {}

  /// To be told of every instant switch that was posted. It replaces the display's former one.
  void switched(const std::string& displayID, const std::string& originID, const std::string& targetID);

  /// To be told of every new snapshot: judges the last switch of each display.
  void observe(const SpaceSnapshot& snapshot);

  /// True from the second bounce on, for as long as the process lives.
  [[nodiscard]] bool prefersClassicAfterBounces() const { return prefersClassicAfterBounces_; }

 private:
  /// The last instant switch made on a display.
  struct GestureRecord {
    std::string originID;
    std::string targetID;
    std::uint64_t madeAt = 0;  ///< in ticks, so that a change of the wall clock does not matter
    bool armed = false;        ///< the display has been seen on the target
  };

  void countBounce();

  const Clock& clock_;
  Log& log_;
  std::map<std::string, GestureRecord> gestureRecords_;  ///< by display identifier
  int bounceCount_ = 0;
  bool prefersClassicAfterBounces_ = false;
};

}  // namespace tallowin
