#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

#include "commands/outcome.h"
#include "core/space_watcher.h"
#include "platform/main_queue.h"

namespace tallowin {

/// By which whoever carries out a command tells what became of it. The first outcome counts, later ones are ignored, as
/// is all that comes after the time for it is over. Copies are about the same command. Main thread only.
class CommandAnswer {
 public:
  using Condition = std::function<bool(const SpaceSnapshot&)>;

  /// About no command: nobody is told.
  CommandAnswer() = default;

  void tell(const Outcome& outcome) const;
  void done() const { tell(Outcome::done()); }
  void refuse(std::string_view why) const { tell(Outcome::refused(why)); }

  /// It is done as soon as a snapshot of the watcher's satisfies the condition: now, if the latest one does.
  void doneWhen(Condition condition) const;

 private:
  friend class CommandsUnderWay;
  struct State;

  explicit CommandAnswer(std::weak_ptr<State> state) : state_(std::move(state)) {}

  std::weak_ptr<State> state_;
};

/// The commands that have no outcome yet. Main thread only.
class CommandsUnderWay {
 public:
  /// What is asked waits for earlier commands no longer than this.
  static constexpr Duration patienceOfQueries = std::chrono::milliseconds(500);
  /// The first snapshot is waited for no longer than this.
  static constexpr Duration patienceAtStart = std::chrono::seconds(5);

  CommandsUnderWay(SpaceWatcher& watcher, MainQueue& mainQueue);
  ~CommandsUnderWay();
  CommandsUnderWay(const CommandsUnderWay&) = delete;
  CommandsUnderWay& operator=(const CommandsUnderWay&) = delete;

  /// A command begins. `told` runs once, when its outcome is known, maybe inside a call of the answer's; after
  /// `patience` the outcome is notSeen. Not if this object goes before.
  [[nodiscard]] CommandAnswer begin(Duration patience, OutcomeHandler told);

  /// From now on whenStarted() waits for a snapshot that has displays.
  void awaitFirstSnapshot();

  /// Runs `work` when the first snapshot is there: at once unless awaitFirstSnapshot() was called just before.
  void whenStarted(std::function<void()> work);

  /// Runs `work`, which tells something, when it is true after all commands that were given before: then, and when
  /// every one of these has its outcome.
  void whenSettled(std::function<void()> work);

 private:
  friend class CommandAnswer;
  using State = CommandAnswer::State;
  /// Work that waits for the commands up to a number.
  struct Waiting;

  void finish(const State& state, const Outcome& outcome);
  void wait(std::uint64_t upTo, Duration patience, std::function<void()> work);
  void runReady();
  void lookSoon();
  void look();
  [[nodiscard]] bool isUnderWay(std::uint64_t upTo) const;

  SpaceWatcher& watcher_;
  MainQueue& mainQueue_;
  std::uint64_t lastNumber_ = 0;  ///< of a command; 0 is the start
  // In the order in which they began. Shared with look(), during which they may end; their answers hold them weakly.
  std::vector<std::shared_ptr<State>> underWay_;
  std::vector<std::unique_ptr<Waiting>> waiting_;
  WorkItem look_;
  Subscription snapshots_;
};

}  // namespace tallowin
