#include "windows/move_tally.h"

namespace tallowin {

MoveTally::MoveTally(Completion completion) : state_(std::make_shared<State>()) {
  state_->completion = std::move(completion);
}

WindowMover::Completion MoveTally::expect() {
  ++state_->pending;
  return [state = state_](WindowMover::Result result) {
    --state->pending;
    state->moved += result ? 1U : 0U;
    if (state->closed && state->pending == 0) {
      state->completion(state->moved);
    }
  };
}

void MoveTally::close(MainQueue& mainQueue) {
  if (state_->pending == 0) {
    mainQueue.async([state = state_] { state->completion(state->moved); });
  } else {
    state_->closed = true;
  }
}

}  // namespace tallowin
