#pragma once

#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>

#include "platform/simulated/desktop_state.h"
#include "platform/simulated/journal.h"
#include "platform/ways_in.h"

namespace tallowin {

/// URLs that the simulated user opens. Main thread only.
class SimulatedURLEvents : public URLEvents {
 public:
  void setHandler(std::function<void(const std::string& text)> handler) override { handler_ = std::move(handler); }

  /// Hands over a text; nothing happens while nobody takes it.
  void open(const std::string& text) {
    if (handler_) {
      handler_(text);
    }
  }

 private:
  std::function<void(const std::string& text)> handler_;
};

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

/// A user's bus on which nobody but the program and the simulated user is; what is answered and signalled becomes lines
/// of the journal. Main thread only.
class SimulatedDesktopService : public DesktopService {
 public:
  explicit SimulatedDesktopService(Journal& journal) : journal_(journal) {}

  Subscription offer(ServiceDescription description, Handlers handlers) override;
  void tellChanged(const std::string& interface, const std::vector<std::string>& properties) override;

  /// Calls the method of this name, or reads the property.
  void call(const std::string& member, const PropertyList& arguments);

  /// Signals are written down from now on.
  void listen() { listens_ = true; }

 private:
  struct Offered {
    ServiceDescription description;
    Handlers handlers;
  };

  Journal& journal_;
  std::optional<Offered> offered_;
  bool listens_ = false;
};

/// Ports of the simulated machine. Listening, answering and ending to listen are lines of the journal. Main thread
/// only.
class SimulatedTCPListeners : public TCPListeners {
 public:
  SimulatedTCPListeners(const DesktopState& state, Journal& journal) : state_(state), journal_(journal) {}

  std::expected<std::unique_ptr<TCPListener>, std::string> listen(std::uint16_t port, TCPResponder responder) override;

  /// Another program connects to a port and sends a request, whose first read brings as much as a read takes.
  void request(std::uint16_t port, const std::string& bytes);

 private:
  class Listener;

  const DesktopState& state_;
  Journal& journal_;
  std::map<std::uint16_t, TCPResponder> open_;
};

}  // namespace tallowin
