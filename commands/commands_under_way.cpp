#include "commands/commands_under_way.h"

#include <algorithm>
#include <utility>

namespace tallowin {

struct CommandAnswer::State {
  CommandsUnderWay& owner;
  const std::uint64_t number;
  OutcomeHandler told;
  Condition condition;
  WorkItem deadline;
};

struct CommandsUnderWay::Waiting {
  const std::uint64_t upTo;
  std::function<void()> work;
  WorkItem deadline;
};

void CommandAnswer::tell(const Outcome& outcome) const {
  if (const auto state = state_.lock()) {
    state->owner.finish(*state, outcome);
  }
}

void CommandAnswer::doneWhen(Condition condition) const {
  if (const auto state = state_.lock()) {
    if (condition(state->owner.watcher_.latest())) {
      done();
    } else {
      state->condition = std::move(condition);
    }
  }
}

CommandsUnderWay::CommandsUnderWay(SpaceWatcher& watcher, MainQueue& mainQueue)
    : watcher_(watcher),
      mainQueue_(mainQueue),
      snapshots_(watcher.snapshot().observeDidChange([this](const SpaceSnapshot&) { lookSoon(); })) {}

CommandsUnderWay::~CommandsUnderWay() = default;

CommandAnswer CommandsUnderWay::begin(Duration patience, OutcomeHandler told) {
  const auto state =
      underWay_.emplace_back(std::make_shared<State>(State{*this, ++lastNumber_, std::move(told), {}, {}}));
  CommandAnswer answer(state);
  state->deadline = mainQueue_.after(patience, [answer] { answer.tell(Outcome::notSeen()); });
  return answer;
}

void CommandsUnderWay::awaitFirstSnapshot() {
  const auto state = underWay_.emplace_back(std::make_shared<State>(State{*this, 0, [](const Outcome&) {}, {}, {}}));
  const CommandAnswer answer(state);
  state->deadline = mainQueue_.after(patienceAtStart, [answer] { answer.done(); });
  answer.doneWhen([](const SpaceSnapshot& snapshot) { return !snapshot.displays.empty(); });
}

void CommandsUnderWay::whenStarted(std::function<void()> work) {
  wait(0, patienceAtStart, std::move(work));
}

void CommandsUnderWay::whenSettled(std::function<void()> work) {
  whenStarted([this, work = std::move(work)]() mutable { wait(lastNumber_, patienceOfQueries, std::move(work)); });
}

void CommandsUnderWay::finish(const State& state, const Outcome& outcome) {
  const auto found = std::ranges::find(underWay_, &state, &std::shared_ptr<State>::get);
  if (found == underWay_.end()) {
    return;
  }
  const auto finished = std::move(*found);
  underWay_.erase(found);
  finished->deadline.cancel();
  finished->told(outcome);
  runReady();
}

void CommandsUnderWay::wait(std::uint64_t upTo, Duration patience, std::function<void()> work) {
  if (!isUnderWay(upTo)) {
    work();
    return;
  }
  auto& waiting = *waiting_.emplace_back(std::make_unique<Waiting>(Waiting{upTo, std::move(work), {}}));
  waiting.deadline = mainQueue_.after(patience, [this, &waiting] {
    const auto found = std::ranges::find(waiting_, &waiting, &std::unique_ptr<Waiting>::get);
    const auto due = std::move(*found);
    waiting_.erase(found);
    due->work();
  });
}

void CommandsUnderWay::runReady() {
  std::vector<std::unique_ptr<Waiting>> ready;
  for (auto& waiting : waiting_) {
    if (!isUnderWay(waiting->upTo)) {
      ready.push_back(std::move(waiting));
    }
  }
  std::erase(waiting_, nullptr);
  for (const auto& each : ready) {
    each->work();
  }
}

/// Whoever else hears of the snapshot is to be done with it before anybody is told what it shows.
void CommandsUnderWay::lookSoon() {
  if (std::ranges::any_of(underWay_, [](const auto& state) { return static_cast<bool>(state->condition); })) {
    look_ = mainQueue_.after(Duration::zero(), [this] { look(); });
  }
}

void CommandsUnderWay::look() {
  const auto states = underWay_;
  for (const auto& state : states) {
    if (state->condition && state->condition(watcher_.latest())) {
      finish(*state, Outcome::done());
    }
  }
}

bool CommandsUnderWay::isUnderWay(std::uint64_t upTo) const {
  return std::ranges::any_of(underWay_, [upTo](const auto& state) { return state->number <= upTo; });
}

}  // namespace tallowin
