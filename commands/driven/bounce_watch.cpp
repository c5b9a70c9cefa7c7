#include "commands/driven/bounce_watch.h"

namespace tallowin {

namespace {

constexpr auto bounceWatchCategory = "Switcher";
/// Later than this a return to the old Space is somebody's wish. In ticks.
constexpr std::uint64_t bounceWindow = 350'000'000;
constexpr int bouncesTolerated = 2;

}  // namespace

void BounceWatch::switched(const std::string& displayID, const std::string& originID, const std::string& targetID) {
  gestureRecords_[displayID] = {originID, targetID, clock_.machAbsoluteTime(), false};
}

void BounceWatch::observe(const SpaceSnapshot& snapshot) {
  for (const auto& display : snapshot.displays) {
    const auto found = gestureRecords_.find(display.id);
    if (found == gestureRecords_.end() || !display.activeSpace()) {
      continue;
    }
    auto& record = found->second;
    if (clock_.machAbsoluteTime() - record.madeAt > bounceWindow) {
      gestureRecords_.erase(found);
    } else if (record.armed && display.activeSpaceID == record.originID) {
      gestureRecords_.erase(found);
      countBounce();
    } else if (display.activeSpaceID == record.targetID) {
      record.armed = true;
    }
  }
}

void BounceWatch::countBounce() {
  ++bounceCount_;
  if (bounceCount_ >= bouncesTolerated && !prefersClassicAfterBounces_) {
    prefersClassicAfterBounces_ = true;
    log_.error(bounceWatchCategory, "gesture switches bounce back, using classic switching for this session");
  }
}

}  // namespace tallowin
