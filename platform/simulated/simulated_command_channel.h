#pragma once

#include <memory>
#include <set>

#include "platform/command_channel.h"
#include "platform/simulated/journal.h"

namespace tallowin {

/// Commands that the simulated user gives on a command line; what they print becomes lines of the journal. Main thread
/// only.
class SimulatedCommandChannel : public CommandChannel {
 public:
  explicit SimulatedCommandChannel(Journal& journal) : journal_(journal) {}

  void setHandler(Handler handler) override { handler_ = std::move(handler); }

  /// Runs a command; nothing happens while nobody takes it. Callers are counted from 1.
  void run(const std::vector<std::string>& arguments);

  /// Ends a caller's program while it is still being answered.
  void interrupt(int caller) { callers_.erase(caller); }

 private:
  class JournalCaller;

  Journal& journal_;
  Handler handler_;
  int lastCaller_ = 0;
  std::set<int> callers_;  ///< those whose programs have not ended
};

}  // namespace tallowin
