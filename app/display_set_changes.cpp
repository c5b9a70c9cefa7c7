#include "app/display_set_changes.h"

namespace tallowin {

void DisplaySetChanges::start() {
  services_.displaySets.onChange = [this] {
    services_.automaticProfile.look(services_.snapshot());
    services_.reconnect.displaysChanged();
  };
  services_.displaySets.onSettled = [this](const DisplaySet& before, const DisplaySet& now) {
    services_.reconnect.displaysSettled(before, now);
  };
  services_.displaySets.start();
}

void DisplaySetChanges::look(const SpaceSnapshot& snapshot) {
  services_.automaticProfile.look(snapshot);
  services_.displaySets.look();
}

}  // namespace tallowin
