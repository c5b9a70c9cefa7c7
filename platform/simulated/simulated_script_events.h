#pragma once

#include "platform/script_events.h"
#include "platform/simulated/journal.h"

namespace tallowin {

/// Scripts and shortcuts that the simulated user runs; what comes back becomes a line of the journal. Nothing happens
/// while nobody receives them. Main thread only.
class SimulatedScriptEvents : public ScriptEvents {
 public:
  explicit SimulatedScriptEvents(Journal& journal) : journal_(journal) {}

  void setHandlers(Handlers handlers) override { handlers_ = std::move(handlers); }

  void run(const ScriptCommandEvent& event) { tell(handlers_.command, event); }
  void run(const IntentEvent& event) { tell(handlers_.intent, event); }
  void speak(const std::string& phrase) { tell(handlers_.phrase, phrase); }

 private:
  template <typename Event>
  void tell(const std::function<Result(const Event&)>& handler, const Event& event) {
    if (handler) {
      const auto result = handler(event);
      nlohmann::ordered_json outcome;
      outcome[result ? "value" : "error"] = result ? *result : PropertyList(result.error());
      journal_.record("scriptResult", outcome);
    }
  }

  Journal& journal_;
  Handlers handlers_;
};

}  // namespace tallowin
