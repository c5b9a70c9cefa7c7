#include "core/driven/window_moves.h"

#include <algorithm>

#include "core/driven/mach_o_symbols.h"

namespace tallowin {

namespace {

constexpr auto operationClass = "SLSBridgedMoveWindowsToManagedSpaceOperation";
constexpr auto operationInitialiser = "initWithWindows:spaceID:";

// The four characters "TWL1", big-endian.
constexpr std::uint32_t workspace = 0x54574c31;

/// A list of one window number, as a 32-bit signed number.
PropertyList windowList(WindowNumber window) {
  return PropertyList::array({static_cast<std::int32_t>(window)});
}

bool isWindowServerFramework(const LoadedImage& image) {
  constexpr std::size_t shortestPath = 9;
  return image.path.size() >= shortestPath && image.path.ends_with("/SkyLight") && isMachO64(image.bytes);
}

}  // namespace

bool WindowMoves::TWMoveBridgedIsAvailable() {
  std::call_once(bridgedLooked_, [this] { findBridged(); });
  return bridged_.perform != nullptr && bridged_.initialise != nullptr;
}

void WindowMoves::findBridged() {
  const auto getClass = lookup_.resolveInDefaultNamespace<private_functions::GetClass>("objc_getClass");
  const auto selector = lookup_.resolveInDefaultNamespace<private_functions::RegisterSelector>("sel_registerName");
  const auto getMethod =
      lookup_.resolveInDefaultNamespace<private_functions::GetInstanceMethod>("class_getInstanceMethod");
  bridged_.send = lookup_.resolveInDefaultNamespace<void*>("objc_msgSend");
  bridged_.perform = findEntryPoint();
  if (getClass == nullptr || selector == nullptr || getMethod == nullptr || bridged_.send == nullptr) {
    return;
  }
  bridged_.objectClass = getClass(operationClass);
  auto* initialise = selector(operationInitialiser);
  if (bridged_.objectClass != nullptr && getMethod(bridged_.objectClass, initialise) != nullptr) {
    bridged_.initialise = initialise;
    bridged_.allocate = selector("alloc");
    bridged_.release = selector("release");
  }
}

private_functions::PerformBridgedOperation WindowMoves::findEntryPoint() const {
  using Function = private_functions::PerformBridgedOperation;
  if (const auto exported = lookup_.resolveInDefaultNamespace<Function>(private_functions::performBridgedOperation)) {
    return exported;
  }
  const auto images = lookup_.loader().loadedImages();
  const auto framework = std::ranges::find_if(images, isWindowServerFramework);
  const auto address = framework != images.end()
                           ? addressOfSymbol(*framework, private_functions::performBridgedOperation)
                           : std::nullopt;
  return address ? reinterpret_cast<Function>(*address) : nullptr;
}

bool WindowMoves::TWMoveBridged(WindowNumber window, ManagedSpaceID space) {
  if (!TWMoveBridgedIsAvailable()) {
    return false;
  }
  const auto send = reinterpret_cast<private_functions::Send>(bridged_.send);
  const auto sendInit = reinterpret_cast<private_functions::SendInitWithWindows>(bridged_.send);
  const CFObject windows(coreFoundation_, coreFoundation_.create(windowList(window)));
  auto* allocated = send(bridged_.objectClass, bridged_.allocate);
  if (!windows || allocated == nullptr) {
    return false;
  }
  auto* operation = sendInit(allocated, bridged_.initialise, windows.get(), static_cast<std::uint64_t>(space));
  if (operation == nullptr) {
    return false;
  }
  bridged_.perform(operation);
  send(operation, bridged_.release);
  return true;
}

bool WindowMoves::TWMoveManagedSpace(ConnectionID connection, WindowNumber window, ManagedSpaceID space) {
  if (!TWMoveManagedSpaceIsAvailable()) {
    return false;
  }
  const CFObject windows(coreFoundation_, coreFoundation_.create(windowList(window)));
  if (windows) {
    moveToManagedSpace_.get(lookup_)(connection, windows.get(), static_cast<std::uint64_t>(space));
  }
  return static_cast<bool>(windows);
}

bool WindowMoves::TWMoveCompatID(ConnectionID connection, WindowNumber window, ManagedSpaceID space) {
  if (!TWMoveCompatIDIsAvailable()) {
    return false;
  }
  const auto setCompatID = setCompatID_.get(lookup_);
  const auto managed = static_cast<std::uint64_t>(space);
  setCompatID(connection, managed, workspace);
  const auto error = setWorkspace_.get(lookup_)(connection, &window, 1, workspace);
  setCompatID(connection, managed, 0);
  return error == 0;
}

}  // namespace tallowin
