#pragma once

#include <cstdint>
#include <map>
#include <set>
#include <string_view>
#include <vector>

#include "platform/main_queue.h"
#include "platform/private_functions.h"
#include "platform/simulated/desktop_state.h"
#include "platform/simulated/journal.h"

namespace tallowin {

/// What the window server's private functions do, in plain types. Main thread only.
class SimulatedWindowServer {
 public:
  using Error = private_functions::Error;
  static constexpr Error success = 0;
  static constexpr Error failure = 1000;  // CGError.h, kCGErrorFailure

  SimulatedWindowServer(DesktopState& state, Journal& journal, std::set<std::uint32_t> notificationFailures)
      : state_(state), journal_(journal), notificationFailures_(std::move(notificationFailures)) {}

  [[nodiscard]] ConnectionID connection() const { return state_.connection; }
  /// Null when nothing is handed out.
  [[nodiscard]] const PropertyList& managedDisplaySpaces() const { return state_.spaces.list(); }
  [[nodiscard]] const std::optional<std::string>& menuBarDisplay() const { return state_.menuBarDisplay; }
  /// The active Space of the menu-bar display, else of the first; 0 when there is none.
  [[nodiscard]] std::uint64_t activeSpace() const;
  [[nodiscard]] std::vector<ManagedSpaceID> spacesOf(WindowNumber window) const;

  /// Receivers of connection notifications. The same one may be registered for several events, and more than once.
  Error registerNotifyProc(private_functions::ConnectionNotifyProc proc, std::uint32_t event, void* argument);
  /// Tells the receivers of this event.
  void notify(std::uint32_t event);

  [[nodiscard]] const SymbolicHotKeys& hotKeys() const { return state_.hotKeys; }
  Error setHotKeyEnabled(std::uint32_t hotKey, bool enabled);

  /// Moves windows to a Space; windows that do not exist are passed over, as is a Space that does not, and a function
  /// whose moves are to be ignored.
  void moveWindows(std::string_view op, const std::vector<std::int64_t>& windows, std::uint64_t space);

  /// Gives a Space a compatibility id, or takes it away with 0.
  Error setCompatID(std::uint64_t space, std::uint32_t compatID);
  /// Moves windows to the Space that has this compatibility id.
  Error setWorkspace(const std::vector<std::int64_t>& windows, std::uint32_t workspace);

 private:
  struct Receiver {
    private_functions::ConnectionNotifyProc proc = nullptr;
    std::uint32_t event = 0;
    void* argument = nullptr;
  };

  void place(const std::vector<std::int64_t>& windows, ManagedSpaceID space);

  DesktopState& state_;
  Journal& journal_;
  const std::set<std::uint32_t> notificationFailures_;
  std::vector<Receiver> receivers_;
  std::map<std::uint32_t, ManagedSpaceID> compatIDs_;
};

}  // namespace tallowin
