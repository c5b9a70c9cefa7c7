#include <algorithm>
#include <utility>

#include "platform/simulated/simulated_functions.h"

namespace tallowin {

namespace {

namespace p = private_functions;

constexpr p::Error success = 0;
constexpr p::Error failure = 1000;  // CGError.h, kCGErrorFailure
constexpr auto moveFunction = "SLSMoveWindowsToManagedSpace";
constexpr auto workspaceFunction = "SLSSetWindowListWorkspace";

/// What functions with this connection work on, or null.
SimulatedFunctions* connected(ConnectionID connection) {
  return connection != 0 ? SimulatedFunctions::current : nullptr;
}

ConnectionID mainConnectionID() {
  return SimulatedFunctions::current != nullptr ? SimulatedFunctions::current->services.state.connection : 0;
}

CFTypeRef copyManagedDisplaySpaces(ConnectionID connection) {
  const auto* const context = connected(connection);
  const bool isHandedOut = context != nullptr && !context->services.state.spaces.list().is_null();
  return isHandedOut ? context->services.coreFoundation.create(context->services.state.spaces.list()) : nullptr;
}

CFTypeRef copyActiveMenuBarDisplayIdentifier(ConnectionID connection) {
  const auto* const context = connected(connection);
  const bool isKnown = context != nullptr && context->services.state.menuBarDisplay;
  return isKnown ? context->services.coreFoundation.create(*context->services.state.menuBarDisplay) : nullptr;
}

/// The active Space of the menu-bar display, else of the first; 0 when there is none.
std::uint64_t getActiveSpace(ConnectionID connection) {
  const auto* const context = connected(connection);
  const auto rows = context != nullptr ? context->services.state.spaces.displays() : std::vector<DesktopDisplay>();
  if (rows.empty()) {
    return 0;
  }
  const auto hasMenuBar = [&](const DesktopDisplay& row) { return context->services.state.menuBarDisplay == row.id; };
  const auto found = std::ranges::find_if(rows, hasMenuBar);
  return static_cast<std::uint64_t>((found != rows.end() ? *found : rows.front()).current.value_or(0));
}

p::Error registerConnectionNotifyProc(ConnectionID connection, p::ConnectionNotifyProc proc, std::uint32_t event,
                                      void* argument) {
  auto* const context = connected(connection);
  if (context == nullptr) {
    return failure;
  }
  const bool accepted = !context->notificationFailures.contains(event);
  context->services.journal.record("SLSRegisterConnectionNotifyProc", {{"event", event}, {"accepted", accepted}});
  if (accepted) {
    context->receivers.push_back({proc, event, argument});
  }
  return accepted ? success : failure;
}

SymbolicHotKey* symbolicHotKey(std::uint32_t number) {
  if (SimulatedFunctions::current == nullptr || !std::in_range<int>(number)) {
    return nullptr;
  }
  auto& hotKeys = SimulatedFunctions::current->services.state.hotKeys;
  const auto found = hotKeys.find(static_cast<int>(number));
  return found != hotKeys.end() ? &found->second : nullptr;
}

p::Error getSymbolicHotKeyValue(std::uint32_t number, std::uint16_t* character, std::uint16_t* keyCode,
                                std::uint64_t* flags) {
  const auto* const hotKey = symbolicHotKey(number);
  if (hotKey == nullptr || !hotKey->binding) {
    return failure;
  }
  *character = 0xFFFF;  // no key equivalent
  *keyCode = hotKey->binding->keyCode;
  *flags = hotKey->binding->modifierFlags;
  return success;
}

bool isSymbolicHotKeyEnabled(std::uint32_t number) {
  const auto* const hotKey = symbolicHotKey(number);
  return hotKey != nullptr && hotKey->enabled;
}

p::Error setSymbolicHotKeyEnabled(std::uint32_t number, bool enabled) {
  if (const auto* const context = SimulatedFunctions::current) {
    context->services.journal.record("CGSSetSymbolicHotKeyEnabled", {{"hotKey", number}, {"enabled", enabled}});
  }
  auto* const hotKey = symbolicHotKey(number);
  if (hotKey == nullptr) {
    return failure;
  }
  hotKey->enabled = enabled;
  return success;
}

CFTypeRef copySpacesForWindows(ConnectionID connection, std::int32_t mask, CFTypeRef windows) {
  // 1 stands for the current Spaces, 2 for the others, 4 for full-screen ones; all that the simulation tells is all.
  constexpr std::int32_t allSpaces = 7;
  const auto* const context = connected(connection);
  if (context == nullptr || mask != allSpaces) {
    return nullptr;
  }
  auto spaces = PropertyList::array();
  for (const auto number : context->windowNumbers(windows)) {
    if (const auto* const window = context->window(number)) {
      std::ranges::copy(window->spaces, std::back_inserter(spaces));
    }
  }
  return context->services.coreFoundation.create(spaces);
}

void moveWindowsToManagedSpace(ConnectionID connection, CFTypeRef windows, std::uint64_t space) {
  if (auto* const context = connected(connection)) {
    const auto numbers = context->windowNumbers(windows);
    context->services.journal.record(moveFunction, {{"windows", numbers}, {"space", space}});
    context->move(moveFunction, numbers, space);
  }
}

/// Gives a Space a compatibility id, or takes it away with 0.
p::Error spaceSetCompatID(ConnectionID connection, std::uint64_t space, std::uint32_t compatID) {
  auto* const context = connected(connection);
  if (context == nullptr) {
    return failure;
  }
  context->services.journal.record("SLSSpaceSetCompatID", {{"space", space}, {"compatID", compatID}});
  const auto id = static_cast<ManagedSpaceID>(space);
  if (!context->services.state.spaces.displayOf(id)) {
    return failure;
  }
  std::erase_if(context->compatIDs, [id](const auto& entry) { return entry.second == id; });
  if (compatID != 0) {
    context->compatIDs[compatID] = id;
  }
  return success;
}

/// Moves windows to the Space that has this compatibility id.
p::Error setWindowListWorkspace(ConnectionID connection, const std::uint32_t* list, std::int32_t count,
                                std::uint32_t workspace) {
  auto* const context = connected(connection);
  if (context == nullptr || count < 0) {
    return failure;
  }
  const std::vector<std::int64_t> windows(list, list + count);
  context->services.journal.record(workspaceFunction, {{"windows", windows}, {"workspace", workspace}});
  const auto found = context->compatIDs.find(workspace);
  if (found == context->compatIDs.end()) {
    return failure;
  }
  context->move(workspaceFunction, windows, static_cast<std::uint64_t>(found->second));
  return success;
}

/// Under both prefixes that names have had in the system's releases.
template <typename Signature>
void addBoth(std::vector<SimulatedFunction>& functions, const std::string& stem, Signature function) {
  for (const auto* const prefix : {"SLS", "CGS"}) {
    functions.push_back({prefix + stem, FunctionLibrary::skyLight, reinterpret_cast<void*>(function)});
  }
}

}  // namespace

std::vector<SimulatedFunction> windowServerFunctions() {
  using enum FunctionLibrary;
  std::vector<SimulatedFunction> all = {
      SimulatedFunction::make<p::MainConnectionID>("SLSMainConnectionID", skyLight, mainConnectionID),
      SimulatedFunction::make<p::MainConnectionID>("_CGSDefaultConnection", skyLight, mainConnectionID),
      SimulatedFunction::make<p::MoveWindowsToManagedSpace>(moveFunction, skyLight, moveWindowsToManagedSpace),
      SimulatedFunction::make<p::SpaceSetCompatID>("SLSSpaceSetCompatID", skyLight, spaceSetCompatID),
      SimulatedFunction::make<p::SetWindowListWorkspace>(workspaceFunction, skyLight, setWindowListWorkspace),
  };
  addBoth<p::CopyManagedDisplaySpaces>(all, "CopyManagedDisplaySpaces", copyManagedDisplaySpaces);
  addBoth<p::CopyActiveMenuBarDisplayIdentifier>(all, "CopyActiveMenuBarDisplayIdentifier",
                                                 copyActiveMenuBarDisplayIdentifier);
  addBoth<p::GetActiveSpace>(all, "GetActiveSpace", getActiveSpace);
  addBoth<p::RegisterConnectionNotifyProc>(all, "RegisterConnectionNotifyProc", registerConnectionNotifyProc);
  addBoth<p::GetSymbolicHotKeyValue>(all, "GetSymbolicHotKeyValue", getSymbolicHotKeyValue);
  addBoth<p::IsSymbolicHotKeyEnabled>(all, "IsSymbolicHotKeyEnabled", isSymbolicHotKeyEnabled);
  addBoth<p::SetSymbolicHotKeyEnabled>(all, "SetSymbolicHotKeyEnabled", setSymbolicHotKeyEnabled);
  addBoth<p::CopySpacesForWindows>(all, "CopySpacesForWindows", copySpacesForWindows);
  return all;
}

}  // namespace tallowin
