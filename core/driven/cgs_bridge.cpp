#include "core/driven/cgs_bridge.h"

#include <array>
#include <cstring>

#include "base/property_list_reading.h"

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

CallbackSlot<const TouchFrame&>& touchReceiver() {
  static CallbackSlot<const TouchFrame&> slot;
  return slot;
}

/// The frame that `count` contact records make up.
TouchFrame frameOf(const void* contacts, std::int32_t count, double timestamp) {
  TouchFrame frame{count, 0, 0, timestamp};
  if (count < 1 || contacts == nullptr) {
    return frame;
  }
  double sumX = 0;
  double sumY = 0;
  const auto* record = static_cast<const std::byte*>(contacts);
  for (std::int32_t i = 0; i < count; ++i, record += private_functions::contactSize) {
    std::array<float, 2> position{};
    std::memcpy(position.data(), record + private_functions::contactPositionOffset, sizeof position);
    sumX += position[0];
    sumY += position[1];
  }
  frame.meanX = static_cast<float>(sumX / count);
  frame.meanY = static_cast<float>(sumY / count);
  return frame;
}

std::int32_t frameTrampoline(const void* /*device*/, const void* contacts, std::int32_t count, double timestamp,
                             std::int32_t /*frame*/) {
  touchReceiver().call(frameOf(contacts, count, timestamp));
  return 0;
}

}  // namespace

CGSBridge::CGSBridge(DynamicLoader& loader, CoreFoundation& coreFoundation)
    : lookup_(loader), coreFoundation_(coreFoundation), moves_(lookup_, coreFoundation) {}

CGSBridge::~CGSBridge() {
  notificationReceiver().clear(this);
  touchReceiver().clear(this);
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
  const auto getWindow = functions_.axGetWindow.get(lookup_);
  WindowNumber window = 0;
  if (element == nullptr || getWindow == nullptr || getWindow(element->reference(), &window) != 0) {
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
  using Function = private_functions::CoreDockSendNotification;
  constexpr auto name = "CoreDockSendNotification";
  std::call_once(dockLooked_, [this] {
    dockSendNotification_ = lookup_.resolveInDefaultNamespace<Function>(name);
    auto* const framework = dockSendNotification_ == nullptr
                                ? lookup_.loader().open(private_functions::hiServices, DynamicLoader::lazy)
                                : nullptr;
    if (framework != nullptr) {
      dockSendNotification_ = reinterpret_cast<Function>(lookup_.loader().symbol(framework, name));
    }
  });
  if (dockSendNotification_ == nullptr) {
    return false;
  }
  dockSendNotification_(CFObject(coreFoundation_, coreFoundation_.create(notification)).get(), nullptr);
  return true;
}

/// Starting again registers on every device again.
bool CGSBridge::CGSBridgeStartTouchMonitor(TouchCallback callback) {
  auto& loader = lookup_.loader();
  auto* const framework = loader.open(private_functions::multitouchSupport, DynamicLoader::lazy);
  if (framework == nullptr) {
    return false;
  }
  const auto createList =
      reinterpret_cast<private_functions::DeviceCreateList>(loader.symbol(framework, "MTDeviceCreateList"));
  const auto registerCallback = reinterpret_cast<private_functions::RegisterContactFrameCallback>(
      loader.symbol(framework, "MTRegisterContactFrameCallback"));
  const auto startDevice = reinterpret_cast<private_functions::DeviceStart>(loader.symbol(framework, "MTDeviceStart"));
  if (createList == nullptr || registerCallback == nullptr || startDevice == nullptr) {
    return false;
  }
  touchReceiver().set(this, std::move(callback));
  const CFObject devices(coreFoundation_, createList());
  bool started = false;
  for (const auto* device : coreFoundation_.elements(devices.get())) {
    constexpr std::int32_t defaultMode = 0;
    registerCallback(device, frameTrampoline);
    started = startDevice(device, defaultMode) == 0 || started;
  }
  return started;
}

}  // namespace tallowin
