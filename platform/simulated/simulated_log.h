#pragma once

#include "platform/log.h"
#include "platform/simulated/journal.h"

namespace tallowin {

/// A log whose lines are lines of the journal. Main thread only.
class SimulatedLog : public Log {
 public:
  explicit SimulatedLog(Journal& journal) : journal_(journal) {}

  void write(Level level, std::string_view category, std::string_view message) override {
    if (level == Level::debug) {
      return;
    }
    journal_.record(
        "log", {{"level", level == Level::error ? "error" : "info"}, {"category", category}, {"message", message}});
  }

 private:
  Journal& journal_;
};

}  // namespace tallowin
