#include "platform/simulated/simulated_window_server.h"

#include <utility>

namespace tallowin {

std::uint64_t SimulatedWindowServer::activeSpace() const {
  const auto rows = state_.spaces.displays();
  const DesktopDisplay* chosen = rows.empty() ? nullptr : &rows.front();
  for (const auto& row : rows) {
    if (state_.menuBarDisplay == row.id) {
      chosen = &row;
    }
  }
  return chosen == nullptr ? 0 : static_cast<std::uint64_t>(chosen->current.value_or(0));
}

std::vector<ManagedSpaceID> SimulatedWindowServer::spacesOf(WindowNumber window) const {
  for (const auto& candidate : state_.windows) {
    if (candidate.number == window) {
      return candidate.spaces;
    }
  }
  return {};
}

SimulatedWindowServer::Error SimulatedWindowServer::registerNotifyProc(private_functions::ConnectionNotifyProc proc,
                                                                       std::uint32_t event, void* argument) {
  const bool accepted = proc != nullptr && !notificationFailures_.contains(event);
  journal_.record("SLSRegisterConnectionNotifyProc", {{"event", event}, {"accepted", accepted}});
  if (accepted) {
    receivers_.push_back({proc, event, argument});
  }
  return accepted ? success : failure;
}

void SimulatedWindowServer::notify(std::uint32_t event) {
  // A receiver may register another one.
  const auto told = receivers_;
  for (const auto& receiver : told) {
    if (receiver.event == event) {
      receiver.proc(event, nullptr, 0, receiver.argument);
    }
  }
}

SimulatedWindowServer::Error SimulatedWindowServer::setHotKeyEnabled(std::uint32_t hotKey, bool enabled) {
  journal_.record("CGSSetSymbolicHotKeyEnabled", {{"hotKey", hotKey}, {"enabled", enabled}});
  return std::in_range<int>(hotKey) && state_.hotKeys.setEnabled(static_cast<int>(hotKey), enabled) ? success : failure;
}

void SimulatedWindowServer::moveWindows(std::string_view op, const std::vector<std::int64_t>& windows,
                                        std::uint64_t space) {
  journal_.record(op, {{"windows", windows}, {"space", space}});
  if (std::in_range<ManagedSpaceID>(space) && !state_.ignoredMoves.contains(op)) {
    place(windows, static_cast<ManagedSpaceID>(space));
  }
}

SimulatedWindowServer::Error SimulatedWindowServer::setCompatID(std::uint64_t space, std::uint32_t compatID) {
  journal_.record("SLSSpaceSetCompatID", {{"space", space}, {"compatID", compatID}});
  if (!std::in_range<ManagedSpaceID>(space) || !state_.spaces.displayOf(static_cast<ManagedSpaceID>(space))) {
    return failure;
  }
  std::erase_if(compatIDs_, [&](const auto& entry) { return std::cmp_equal(entry.second, space); });
  if (compatID != 0) {
    compatIDs_[compatID] = static_cast<ManagedSpaceID>(space);
  }
  return success;
}

SimulatedWindowServer::Error SimulatedWindowServer::setWorkspace(const std::vector<std::int64_t>& windows,
                                                                 std::uint32_t workspace) {
  journal_.record("SLSSetWindowListWorkspace", {{"windows", windows}, {"workspace", workspace}});
  const auto found = compatIDs_.find(workspace);
  if (found == compatIDs_.end()) {
    return failure;
  }
  if (!state_.ignoredMoves.contains("SLSSetWindowListWorkspace")) {
    place(windows, found->second);
  }
  return success;
}

void SimulatedWindowServer::place(const std::vector<std::int64_t>& windows, ManagedSpaceID space) {
  if (!state_.spaces.displayOf(space)) {
    return;
  }
  for (const auto number : windows) {
    auto* const window =
        std::in_range<WindowNumber>(number) ? state_.window(static_cast<WindowNumber>(number)) : nullptr;
    if (window != nullptr) {
      window->spaces = {space};
    }
  }
}

}  // namespace tallowin
