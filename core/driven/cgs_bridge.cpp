#include "core/driven/cgs_bridge.h"

#include <array>

#include "base/property_list_reading.h"
#include "core/driven/callback_slot.h"
#include "core/driven/cf_object.h"

namespace tallowin {

namespace {

/// The window-server events that tell of Spaces, in the order in which they are registered.
constexpr std::array<WindowServerEvent, 5> spaceEvents = {1329, 1401, 818, 828, 1322};

/// Asks for the Spaces of a window among all Spaces.
constexpr std::int32_t allSpacesMask = 7;

CallbackSlot<WindowServerEvent>& notificationReceiver() {
  static CallbackSlot<WindowServerEvent> slot;
  return slot;
}

void notificationTrampoline(std::uint32_t event, void* /*data*/, std::size_t /*length*/, void* /*argument*/) {
  notificationReceiver().call(event);
}

}  // namespace

CGSBridge::CGSBridge(DynamicLoader& loader, CoreFoundation& coreFoundation)
    : lookup_(loader),
      coreFoundation_(coreFoundation),
      moves_(lookup_, coreFoundation),
      touchMonitor_(lookup_, coreFoundation) {}

CGSBridge::~CGSBridge() {
  notificationReceiver().clear(this);
}

ConnectionID CGSBridge::CGSBridgeConnection() {
  const auto mainConnectionID = functions_.mainConnectionID.get(lookup_);
  if (connection_ == 0 && mainConnectionID != nullptr) {
    connection_ = mainConnectionID();
  }
  return connection_;
}

std::optional<PropertyList> CGSBridge::managedDisplaySpaces(Functions& functions, ConnectionID connection) {
  const auto copy = functions.copyManagedDisplaySpaces.get(lookup_);
  if (connection == 0 || copy == nullptr) {
    return std::nullopt;
  }
  const CFObject list(coreFoundation_, copy(connection));
  return list ? std::optional(list.propertyList()) : std::nullopt;
}

std::optional<PropertyList> CGSBridge::CGSBridgeCopyManagedDisplaySpaces() {
  return managedDisplaySpaces(functions_, CGSBridgeConnection());
}

std::optional<std::string> CGSBridge::CGSBridgeCopyActiveMenuBarDisplayIdentifier() {
  const auto connection = CGSBridgeConnection();
  const auto copy = functions_.copyActiveMenuBarDisplayIdentifier.get(lookup_);
  if (connection == 0 || copy == nullptr) {
    return std::nullopt;
  }
  return property_list::text(CFObject(coreFoundation_, copy(connection)).propertyList());
}

std::uint64_t CGSBridge::CGSBridgeActiveSpace() {
  const auto connection = CGSBridgeConnection();
  const auto getActiveSpace = functions_.getActiveSpace.get(lookup_);
  return connection != 0 && getActiveSpace != nullptr ? getActiveSpace(connection) : 0;
}

bool CGSBridge::CGSBridgeRegisterSpaceNotifications(SpaceNotificationCallback callback) {
  notificationReceiver().set(this, std::move(callback));
  const auto connection = CGSBridgeConnection();
  const auto registerProc = functions_.registerConnectionNotifyProc.get(lookup_);
  if (connection == 0 || registerProc == nullptr) {
    return false;
  }
  bool all = true;
  for (const auto event : spaceEvents) {
    all = registerProc(connection, notificationTrampoline, event, nullptr) == 0 && all;
  }
  return all;
}

std::optional<SymbolicHotKeyBinding> CGSBridge::CGSBridgeGetSymbolicHotKey(int hotKey) {
  const auto getValue = functions_.getSymbolicHotKeyValue.get(lookup_);
  std::uint16_t keyEquivalent = 0;
  SymbolicHotKeyBinding binding;
  if (getValue == nullptr ||
      getValue(static_cast<std::uint32_t>(hotKey), &keyEquivalent, &binding.keyCode, &binding.modifierFlags) != 0) {
    return std::nullopt;
  }
  return binding;
}

bool CGSBridge::CGSBridgeIsSymbolicHotKeyEnabled(int hotKey) {
  const auto isEnabled = functions_.isSymbolicHotKeyEnabled.get(lookup_);
  return isEnabled != nullptr && isEnabled(static_cast<std::uint32_t>(hotKey));
}

bool CGSBridge::CGSBridgeSetSymbolicHotKeyEnabled(int hotKey, bool enabled) {
  const auto setEnabled = functions_.setSymbolicHotKeyEnabled.get(lookup_);
  return setEnabled != nullptr && setEnabled(static_cast<std::uint32_t>(hotKey), enabled) == 0;
}

CGSBridgeHealth CGSBridge::CGSBridgeProbe() {
  Functions fresh;
  const auto mainConnectionID = fresh.mainConnectionID.get(lookup_);
  const auto connection = mainConnectionID != nullptr ? mainConnectionID() : 0;
  const auto list = managedDisplaySpaces(fresh, connection);
  std::uint32_t bits = 0;
  const auto setIf = [&bits](bool condition, CGSBridgeHealth::Bit bit) { bits |= condition ? bit : 0U; };
  setIf(connection != 0, CGSBridgeHealth::connection);
  setIf(fresh.copyManagedDisplaySpaces.get(lookup_) != nullptr, CGSBridgeHealth::managedDisplaySpaces);
  setIf(fresh.copyActiveMenuBarDisplayIdentifier.get(lookup_) != nullptr, CGSBridgeHealth::activeMenuBarDisplay);
  setIf(fresh.getActiveSpace.get(lookup_) != nullptr, CGSBridgeHealth::activeSpace);
  setIf(fresh.registerConnectionNotifyProc.get(lookup_) != nullptr, CGSBridgeHealth::notifications);
  setIf(fresh.getSymbolicHotKeyValue.get(lookup_) != nullptr && fresh.setSymbolicHotKeyEnabled.get(lookup_) != nullptr,
        CGSBridgeHealth::symbolicHotKeys);
  setIf(list && list->is_array() && !list->empty(), CGSBridgeHealth::spacesListed);
  return CGSBridgeHealth(bits);
}

std::optional<std::vector<ManagedSpaceID>> CGSBridge::CGSBridgeCopySpacesForWindow(WindowNumber window) {
  const auto connection = CGSBridgeConnection();
  const auto copy = functions_.copySpacesForWindows.get(lookup_);
  if (connection == 0 || copy == nullptr) {
    return std::nullopt;
  }
  const CFObject windows(coreFoundation_,
                         coreFoundation_.create(PropertyList::array({static_cast<std::int32_t>(window)})));
  const CFObject answer(coreFoundation_, windows ? copy(connection, allSpacesMask, windows.get()) : nullptr);
  const auto list = answer.propertyList();
  if (!list.is_array()) {
    return std::nullopt;
  }
  std::vector<ManagedSpaceID> spaces;
  for (const auto& element : list) {
    if (const auto space = property_list::integer(element)) {
      spaces.push_back(*space);
    }
  }
  return spaces;
}

std::optional<WindowNumber> CGSBridge::CGSBridgeAXWindowID(const AXUIElement& element) {
  std::call_once(axLooked_, [this] {
    axGetWindow_ = reinterpret_cast<private_functions::AXUIElementGetWindow>(
        lookup_.resolveInDefaultNamespace("_AXUIElementGetWindow"));
  });
  WindowNumber window = 0;
  if (element == nullptr || axGetWindow_ == nullptr || axGetWindow_(element->reference(), &window) != 0) {
    return std::nullopt;
  }
  return window;
}

bool CGSBridge::CGSBridgeMoveWindowToSpace(WindowNumber window, ManagedSpaceID space) {
  if (moves_.TWMoveBridged(window, space)) {
    return true;
  }
  const auto connection = CGSBridgeConnection();
  return connection != 0 &&
         (moves_.TWMoveManagedSpace(connection, window, space) || moves_.TWMoveCompatID(connection, window, space));
}

bool CGSBridge::CGSBridgeDockNotify(std::string_view notification) {
  std::call_once(dockLooked_, [this] {
    auto* found = lookup_.resolveInDefaultNamespace("CoreDockSendNotification");
    if (found == nullptr) {
      auto& loader = lookup_.loader();
      auto* framework = loader.open(private_functions::hiServices, DynamicLoader::lazy);
      found = framework != nullptr ? loader.symbol(framework, "CoreDockSendNotification") : nullptr;
    }
    dockSendNotification_ = reinterpret_cast<private_functions::CoreDockSendNotification>(found);
  });
  if (dockSendNotification_ == nullptr) {
    return false;
  }
  dockSendNotification_(CFObject(coreFoundation_, coreFoundation_.create(notification)).get(), nullptr);
  return true;
}

bool CGSBridge::CGSBridgeStartTouchMonitor(TouchCallback callback) {
  return touchMonitor_.start(std::move(callback));
}

}  // namespace tallowin
