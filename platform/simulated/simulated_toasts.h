#pragma once

#include "platform/simulated/journal.h"
#include "platform/toasts.h"

namespace tallowin {

/// Messages to the simulated user, as lines of the journal. Main thread only.
class SimulatedToasts : public Toasts {
 public:
  explicit SimulatedToasts(Journal& journal) : journal_(journal) {}

  void show(const Toast& toast) override {
    nlohmann::ordered_json arguments = {{"text", toast.text}};
    if (toast.symbol) {
      arguments["symbol"] = *toast.symbol;
    }
    arguments["error"] = toast.isError;
    journal_.record("toast", arguments);
  }

 private:
  Journal& journal_;
};

}  // namespace tallowin
