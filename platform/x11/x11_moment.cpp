#include "platform/x11/x11_moment.h"

namespace tallowin {

X11Moment::Stamp X11Moment::now() {
  const auto stamp = current();  // first: an end that is under way on the main thread is then one of this stamp's
  if (!state_->isEnding.exchange(true)) {
    queue_.async([state = state_] {
      state->isEnding = false;
      ++state->turn;
    });
  }
  return stamp;
}

}  // namespace tallowin
