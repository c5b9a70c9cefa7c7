#pragma once

#include "platform/pasteboard.h"
#include "platform/simulated/journal.h"

namespace tallowin {

/// The simulated clipboard: what is put there goes to the journal. Main thread only.
class SimulatedPasteboard : public Pasteboard {
 public:
  explicit SimulatedPasteboard(Journal& journal) : journal_(journal) {}

  bool setString(std::string_view text) override {
    journal_.record("setString", {{"text", text}});
    return true;
  }

 private:
  Journal& journal_;
};

}  // namespace tallowin
