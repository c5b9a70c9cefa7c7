#include "platform/simulated/simulated_loader.h"

#include <algorithm>
#include <cstdint>
#include <span>

#include "platform/accessibility.h"
#include "platform/private_functions.h"
#include "platform/simulated/mach_o_image_builder.h"
#include "platform/simulated/simulated_accessibility.h"

namespace tallowin {

namespace {

using Error = private_functions::Error;

// The one place where a C function can find what it works on, and the contexts that take turns there.
FunctionContext* current = nullptr;
std::vector<FunctionContext*> contexts;

constexpr Error failure = SimulatedWindowServer::failure;

ConnectionID mainConnectionID() {
  return current == nullptr ? 0 : current->windowServer.connection();
}

CFTypeRef copyManagedDisplaySpaces(ConnectionID connection) {
  if (current == nullptr || connection == 0 || current->windowServer.managedDisplaySpaces().is_null()) {
    return nullptr;
  }
  return current->coreFoundation.create(current->windowServer.managedDisplaySpaces());
}

CFTypeRef copyActiveMenuBarDisplayIdentifier(ConnectionID connection) {
  if (current == nullptr || connection == 0 || !current->windowServer.menuBarDisplay()) {
    return nullptr;
  }
  return current->coreFoundation.create(*current->windowServer.menuBarDisplay());
}

std::uint64_t getActiveSpace(ConnectionID connection) {
  return current == nullptr || connection == 0 ? 0 : current->windowServer.activeSpace();
}

Error registerConnectionNotifyProc(ConnectionID connection, private_functions::ConnectionNotifyProc proc,
                                   std::uint32_t event, void* argument) {
  return current == nullptr || connection == 0 ? failure
                                               : current->windowServer.registerNotifyProc(proc, event, argument);
}

Error getSymbolicHotKeyValue(std::uint32_t hotKey, std::uint16_t* character, std::uint16_t* keyCode,
                             std::uint64_t* flags) {
  const auto binding = current != nullptr && std::in_range<int>(hotKey)
                           ? current->windowServer.hotKeys().binding(static_cast<int>(hotKey))
                           : std::nullopt;
  if (!binding) {
    return failure;
  }
  if (character != nullptr) {
    *character = 0xFFFF;  // no key equivalent
  }
  if (keyCode != nullptr) {
    *keyCode = binding->keyCode;
  }
  if (flags != nullptr) {
    *flags = binding->modifierFlags;
  }
  return SimulatedWindowServer::success;
}

bool isSymbolicHotKeyEnabled(std::uint32_t hotKey) {
  return current != nullptr && std::in_range<int>(hotKey) &&
         current->windowServer.hotKeys().isEnabled(static_cast<int>(hotKey));
}

Error setSymbolicHotKeyEnabled(std::uint32_t hotKey, bool enabled) {
  return current == nullptr ? failure : current->windowServer.setHotKeyEnabled(hotKey, enabled);
}

/// The integers of an array object; what is none is left out.
std::vector<std::int64_t> windowNumbers(const PropertyList& list) {
  std::vector<std::int64_t> numbers;
  for (const auto& element : list.is_array() ? list : PropertyList::array()) {
    if (element.is_number_integer()) {
      numbers.push_back(element.get<std::int64_t>());
    }
  }
  return numbers;
}

CFTypeRef copySpacesForWindows(ConnectionID connection, std::int32_t mask, CFTypeRef windows) {
  // 1 stands for the current Spaces, 2 for the others, 4 for full-screen ones; all that the simulation tells is all.
  constexpr std::int32_t allSpaces = 7;
  if (current == nullptr || connection == 0 || mask != allSpaces) {
    return nullptr;
  }
  auto spaces = PropertyList::array();
  for (const auto number : windowNumbers(current->coreFoundation.propertyList(windows))) {
    if (std::in_range<WindowNumber>(number)) {
      for (const auto space : current->windowServer.spacesOf(static_cast<WindowNumber>(number))) {
        spaces.push_back(space);
      }
    }
  }
  return current->coreFoundation.create(spaces);
}

Error axUIElementGetWindow(const void* reference, std::uint32_t* window) {
  const auto* const handle = static_cast<const AXElementHandle*>(reference);
  const auto* const element = dynamic_cast<const WindowElement*>(handle);
  if (element == nullptr || window == nullptr) {
    return -25201;  // AXError.h, kAXErrorIllegalArgument
  }
  *window = element->number();
  return 0;
}

void moveWindowsToManagedSpace(ConnectionID connection, CFTypeRef windows, std::uint64_t space) {
  if (current != nullptr && connection != 0) {
    current->windowServer.moveWindows("SLSMoveWindowsToManagedSpace",
                                      windowNumbers(current->coreFoundation.propertyList(windows)), space);
  }
}

Error spaceSetCompatID(ConnectionID connection, std::uint64_t space, std::uint32_t compatID) {
  return current == nullptr || connection == 0 ? failure : current->windowServer.setCompatID(space, compatID);
}

Error setWindowListWorkspace(ConnectionID connection, const std::uint32_t* windows, std::int32_t count,
                             std::uint32_t workspace) {
  if (current == nullptr || connection == 0 || windows == nullptr || count < 0) {
    return failure;
  }
  const std::span list(windows, static_cast<std::size_t>(count));
  return current->windowServer.setWorkspace({list.begin(), list.end()}, workspace);
}

void performBridgedOperation(void* operation) {
  if (current == nullptr) {
    return;
  }
  current->objectiveC.performOperation(operation, [](const PropertyList& windows, std::uint64_t space) {
    // The real operation is asynchronous as well; by then the caller has released it.
    current->queue.async([windows = windowNumbers(windows), space] {
      if (current != nullptr) {
        current->windowServer.moveWindows(SimulatedObjectiveC::operationClass, windows, space);
      }
    });
  });
}

void coreDockSendNotification(CFTypeRef name, void* /*argument*/) {
  const auto text = current == nullptr ? PropertyList() : current->coreFoundation.propertyList(name);
  if (text.is_string()) {
    current->dockNotification(text.get<std::string>());
  }
}

CFTypeRef deviceCreateList() {
  return current == nullptr ? nullptr : current->coreFoundation.createArray(current->trackpads.devices());
}

void registerContactFrameCallback(const void* device, private_functions::ContactFrameCallback callback) {
  if (current != nullptr) {
    current->trackpads.registerCallback(device, callback);
  }
}

Error deviceStart(const void* device, std::int32_t mode) {
  return current == nullptr ? failure : current->trackpads.start(device, mode);
}

void* getClass(const char* name) {
  return current == nullptr || name == nullptr ? nullptr : current->objectiveC.getClass(name);
}

void* registerSelector(const char* name) {
  return current == nullptr || name == nullptr ? nullptr : current->objectiveC.registerSelector(name);
}

void* getInstanceMethod(void* type, void* selector) {
  return current == nullptr ? nullptr : current->objectiveC.getInstanceMethod(type, selector);
}

// Callers cast objc_msgSend to the signature of the method, with two to four parameters. On x86-64 and arm64 the first
// four pointer-sized arguments travel in registers that a callee may read whether they were passed or not; those that
// were not are only looked at for the one method that has them.
void* msgSend(void* receiver, void* selector, CFTypeRef windows, std::uint64_t space) {
  return current == nullptr ? nullptr : current->objectiveC.send(receiver, selector, windows, space);
}

/// Checks the signature at compile time.
template <typename Signature>
void* addressOf(Signature function) {
  return reinterpret_cast<void*>(function);
}

}  // namespace

const std::vector<SimulatedFunction>& simulatedFunctions() {
  namespace p = private_functions;
  using enum FunctionLibrary;
  static const std::vector<SimulatedFunction> functions = {
      {"SLSMainConnectionID", skyLight, addressOf<p::MainConnectionID>(mainConnectionID)},
      {"_CGSDefaultConnection", skyLight, addressOf<p::MainConnectionID>(mainConnectionID)},
      {"SLSCopyManagedDisplaySpaces", skyLight, addressOf<p::CopyManagedDisplaySpaces>(copyManagedDisplaySpaces)},
      {"CGSCopyManagedDisplaySpaces", skyLight, addressOf<p::CopyManagedDisplaySpaces>(copyManagedDisplaySpaces)},
      {"SLSCopyActiveMenuBarDisplayIdentifier", skyLight,
       addressOf<p::CopyActiveMenuBarDisplayIdentifier>(copyActiveMenuBarDisplayIdentifier)},
      {"CGSCopyActiveMenuBarDisplayIdentifier", skyLight,
       addressOf<p::CopyActiveMenuBarDisplayIdentifier>(copyActiveMenuBarDisplayIdentifier)},
      {"SLSGetActiveSpace", skyLight, addressOf<p::GetActiveSpace>(getActiveSpace)},
      {"CGSGetActiveSpace", skyLight, addressOf<p::GetActiveSpace>(getActiveSpace)},
      {"SLSRegisterConnectionNotifyProc", skyLight,
       addressOf<p::RegisterConnectionNotifyProc>(registerConnectionNotifyProc)},
      {"CGSRegisterConnectionNotifyProc", skyLight,
       addressOf<p::RegisterConnectionNotifyProc>(registerConnectionNotifyProc)},
      {"CGSGetSymbolicHotKeyValue", skyLight, addressOf<p::GetSymbolicHotKeyValue>(getSymbolicHotKeyValue)},
      {"SLSGetSymbolicHotKeyValue", skyLight, addressOf<p::GetSymbolicHotKeyValue>(getSymbolicHotKeyValue)},
      {"CGSIsSymbolicHotKeyEnabled", skyLight, addressOf<p::IsSymbolicHotKeyEnabled>(isSymbolicHotKeyEnabled)},
      {"SLSIsSymbolicHotKeyEnabled", skyLight, addressOf<p::IsSymbolicHotKeyEnabled>(isSymbolicHotKeyEnabled)},
      {"CGSSetSymbolicHotKeyEnabled", skyLight, addressOf<p::SetSymbolicHotKeyEnabled>(setSymbolicHotKeyEnabled)},
      {"SLSSetSymbolicHotKeyEnabled", skyLight, addressOf<p::SetSymbolicHotKeyEnabled>(setSymbolicHotKeyEnabled)},
      {"SLSCopySpacesForWindows", skyLight, addressOf<p::CopySpacesForWindows>(copySpacesForWindows)},
      {"CGSCopySpacesForWindows", skyLight, addressOf<p::CopySpacesForWindows>(copySpacesForWindows)},
      {"SLSMoveWindowsToManagedSpace", skyLight, addressOf<p::MoveWindowsToManagedSpace>(moveWindowsToManagedSpace)},
      {"SLSSpaceSetCompatID", skyLight, addressOf<p::SpaceSetCompatID>(spaceSetCompatID)},
      {"SLSSetWindowListWorkspace", skyLight, addressOf<p::SetWindowListWorkspace>(setWindowListWorkspace)},
      {p::performBridgedOperation, symbolTable, addressOf<p::PerformBridgedOperation>(performBridgedOperation)},
      {SimulatedObjectiveC::operationClass, symbolTable, nullptr},
      {"_AXUIElementGetWindow", hiServices, addressOf<p::AXUIElementGetWindow>(axUIElementGetWindow)},
      {"CoreDockSendNotification", hiServices, addressOf<p::CoreDockSendNotification>(coreDockSendNotification)},
      {"MTDeviceCreateList", multitouchSupport, addressOf<p::DeviceCreateList>(deviceCreateList)},
      {"MTRegisterContactFrameCallback", multitouchSupport,
       addressOf<p::RegisterContactFrameCallback>(registerContactFrameCallback)},
      {"MTDeviceStart", multitouchSupport, addressOf<p::DeviceStart>(deviceStart)},
      {"objc_getClass", process, addressOf<p::GetClass>(getClass)},
      {"sel_registerName", process, addressOf<p::RegisterSelector>(registerSelector)},
      {"class_getInstanceMethod", process, addressOf<p::GetInstanceMethod>(getInstanceMethod)},
      {"objc_msgSend", process, addressOf<p::SendInitWithWindows>(msgSend)},
  };
  return functions;
}

FunctionContextGuard::FunctionContextGuard(FunctionContext& context) : mine_(&context) {
  contexts.push_back(mine_);
  current = mine_;
}

FunctionContextGuard::~FunctionContextGuard() {
  std::erase(contexts, mine_);
  current = contexts.empty() ? nullptr : contexts.back();
}

namespace {

// Small enough to be taken off any function's address.
constexpr std::int64_t slide = 0x1000;

/// The private framework's image, with a symbol that names nothing of interest beside the one that does.
MachOImageBuilder skyLightImage() {
  MachOImageBuilder image;
  image.symbols.push_back({"_SLSInitialize", 0x2000, {}, true});
  for (const auto& function : simulatedFunctions()) {
    if (function.library == FunctionLibrary::symbolTable && function.address != nullptr) {
      image.symbols.push_back(
          {std::string(function.name), std::bit_cast<std::uint64_t>(function.address) - slide, {}, true});
    }
  }
  return image;
}

}  // namespace

SimulatedLoader::SimulatedLoader(FunctionContext context, std::set<std::string, std::less<>> missing)
    : context_(std::move(context)), guard_(context_), missing_(std::move(missing)) {
  libraries_ = {{private_functions::skyLight, FunctionLibrary::skyLight, true},
                {private_functions::hiServices, FunctionLibrary::hiServices, true},
                {private_functions::multitouchSupport, FunctionLibrary::multitouchSupport, false}};
  auto builder = skyLightImage();
  std::erase_if(builder.symbols, [this](const MachOSymbol& symbol) { return missing_.contains(symbol.name); });
  image_ = builder.build();
  // The addresses in the image are those where it was linked for; only now is it known where it is.
  builder.linkedAt = std::bit_cast<std::uint64_t>(image_.data()) - slide;
  std::ranges::copy(builder.build(), image_.begin());
}

LibraryHandle SimulatedLoader::open(std::string_view path, int mode) {
  const auto found = std::ranges::find(libraries_, path, &Library::path);
  if (found == libraries_.end() || missing_.contains(path) || ((mode & noLoad) != 0 && !found->loaded)) {
    return nullptr;
  }
  found->loaded = true;
  return &*found;
}

void* SimulatedLoader::symbol(LibraryHandle library, std::string_view name) {
  const auto opened = std::ranges::find_if(libraries_, [&](const Library& candidate) { return &candidate == library; });
  if (missing_.contains(name) || (library != nullptr && opened == libraries_.end())) {
    return nullptr;
  }
  for (const auto& function : simulatedFunctions()) {
    const bool exported = function.library != FunctionLibrary::symbolTable;
    const bool found = library != nullptr ? function.library == opened->kind
                                          : exported && function.library != FunctionLibrary::multitouchSupport;
    if (found && function.name == name) {
      return function.address;
    }
  }
  return nullptr;
}

std::vector<LoadedImage> SimulatedLoader::loadedImages() {
  if (missing_.contains(private_functions::skyLight)) {
    return {};
  }
  return {{private_functions::skyLight, image_, slide, std::bit_cast<std::uint64_t>(image_.data())}};
}

std::set<std::string, std::less<>> SimulatedLoader::everything() {
  std::set<std::string, std::less<>> names = {private_functions::skyLight, private_functions::hiServices,
                                              private_functions::multitouchSupport};
  for (const auto& function : simulatedFunctions()) {
    names.emplace(function.name);
  }
  return names;
}

}  // namespace tallowin
