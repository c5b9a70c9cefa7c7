#include "platform/simulated/simulated_functions.h"

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <cstring>

#include "platform/simulated/simulated_accessibility.h"

namespace tallowin {

namespace {

namespace p = private_functions;

constexpr p::Error noError = 0;
constexpr auto operationInitialiser = "initWithWindows:spaceID:";

struct CFValue {
  PropertyList value;
  std::vector<const void*> elements;
};

SimulatedFunctions* context() {
  return SimulatedFunctions::current;
}

p::Error axUIElementGetWindow(const void* reference, std::uint32_t* window) {
  const auto* const element = dynamic_cast<const SimulatedElement*>(static_cast<const AXElementHandle*>(reference));
  const auto number = element != nullptr ? element->window() : std::nullopt;
  if (!number) {
    return -25201;  // AXError.h, kAXErrorIllegalArgument
  }
  *window = *number;
  return noError;
}

void performBridgedOperation(void* reference) {
  if (context() == nullptr || !context()->operations.contains(reference)) {
    return;
  }
  // The real operation is asynchronous as well; by then the caller has released it.
  context()->services.queue.async([operation = *context()->operations[reference]] {
    constexpr auto name = SimulatedFunctions::operationClass;
    if (context() != nullptr) {
      context()->services.journal.record(name, {{"windows", operation.windows}, {"space", operation.space}});
      context()->move(name, operation.windows, operation.space);
    }
  });
}

void coreDockSendNotification(CFTypeRef name, void* /*argument*/) {
  const auto text = context() != nullptr ? context()->services.coreFoundation.propertyList(name) : PropertyList();
  if (text.is_string()) {
    context()->services.dockNotification(text.get<std::string>());
  }
}

CFTypeRef deviceCreateList() {
  std::vector<const void*> references;
  for (const auto& device : context()->devices) {
    references.push_back(&device);
  }
  return SimulatedCoreFoundation::createArray(references);
}

SimulatedFunctions::Device* multitouchDevice(const void* reference) {
  auto& devices = context()->devices;
  const auto found = std::ranges::find_if(devices, [&](const auto& device) { return &device == reference; });
  return found != devices.end() ? &*found : nullptr;
}

void registerContactFrameCallback(const void* reference, p::ContactFrameCallback callback) {
  context()->services.journal.record("MTRegisterContactFrameCallback");
  if (auto* const device = multitouchDevice(reference)) {
    device->callbacks.push_back(callback);
  }
}

p::Error deviceStart(const void* reference, std::int32_t mode) {
  context()->services.journal.record("MTDeviceStart", {{"mode", mode}});
  auto* const device = multitouchDevice(reference);
  if (device == nullptr) {
    return 1;
  }
  device->started = true;
  return noError;
}

void* getClass(const char* name) {
  // The one class is the context itself, which is as good an address as any.
  const bool isThere = context() != nullptr && context()->hasOperationClass;
  return isThere && std::string_view(name) == SimulatedFunctions::operationClass ? context() : nullptr;
}

void* registerSelector(const char* name) {
  return context() != nullptr ? const_cast<std::string*>(&*context()->selectors.emplace(name).first) : nullptr;
}

void* getInstanceMethod(void* type, void* selector) {
  return type == context() && selector == registerSelector(operationInitialiser) ? selector : nullptr;
}

// Callers cast objc_msgSend to the signature of the method, with two to four parameters. On x86-64 and arm64 the first
// four pointer-sized arguments travel in registers that a callee may read whether they were passed or not; those that
// were not are only looked at for the one method that has them.
void* msgSend(void* receiver, void* selector, CFTypeRef windows, std::uint64_t space) {
  if (context() == nullptr) {
    return nullptr;
  }
  auto& operations = context()->operations;
  if (receiver == context() && selector == registerSelector("alloc")) {
    auto operation = std::make_unique<SimulatedFunctions::Operation>();
    auto* const reference = operation.get();
    operations[reference] = std::move(operation);
    return reference;
  }
  const auto found = operations.find(receiver);
  if (found == operations.end()) {
    return nullptr;
  }
  if (selector == registerSelector(operationInitialiser)) {
    *found->second = {context()->windowNumbers(windows), space};
    return receiver;
  }
  if (selector == registerSelector("release")) {
    operations.erase(found);
  }
  return nullptr;
}

}  // namespace

std::vector<SimulatedFunction> runtimeFunctions() {
  using enum FunctionLibrary;
  using F = SimulatedFunction;
  return {
      F::make<p::PerformBridgedOperation>(p::performBridgedOperation, symbolTable, performBridgedOperation),
      {SimulatedFunctions::operationClass, symbolTable, nullptr},
      F::make<p::AXUIElementGetWindow>("_AXUIElementGetWindow", hiServices, axUIElementGetWindow),
      F::make<p::CoreDockSendNotification>("CoreDockSendNotification", hiServices, coreDockSendNotification),
      F::make<p::DeviceCreateList>("MTDeviceCreateList", multitouchSupport, deviceCreateList),
      F::make<p::RegisterContactFrameCallback>("MTRegisterContactFrameCallback", multitouchSupport,
                                               registerContactFrameCallback),
      F::make<p::DeviceStart>("MTDeviceStart", multitouchSupport, deviceStart),
      F::make<p::GetClass>("objc_getClass", process, getClass),
      F::make<p::RegisterSelector>("sel_registerName", process, registerSelector),
      F::make<p::GetInstanceMethod>("class_getInstanceMethod", process, getInstanceMethod),
      F::make<p::SendInitWithWindows>("objc_msgSend", process, msgSend),
  };
}

SimulatedFunctions* SimulatedFunctions::current = nullptr;

SimulatedFunctions::SimulatedFunctions(Services given, const NameSet& missing, std::set<std::uint32_t> failures)
    : services(std::move(given)),
      hasOperationClass(!missing.contains(operationClass)),
      notificationFailures(std::move(failures)),
      devices(static_cast<std::size_t>(services.state.trackpads)) {
  current = this;
}

SimulatedFunctions::~SimulatedFunctions() {
  current = current == this ? nullptr : current;
}

void SimulatedFunctions::notify(WindowServerEvent event) {
  // A receiver may register another one.
  const auto told = receivers;
  for (const auto& receiver : told) {
    if (receiver.event == event) {
      receiver.proc(event, nullptr, 0, receiver.argument);
    }
  }
}

void SimulatedFunctions::touch(const std::vector<CGPoint>& contacts) {
  if (devices.empty() || !devices.front().started) {
    return;
  }
  std::vector<std::byte> records(contacts.size() * p::contactSize);
  for (std::size_t i = 0; i < contacts.size(); ++i) {
    const float position[] = {static_cast<float>(contacts[i].x), static_cast<float>(contacts[i].y)};
    std::memcpy(&records[i * p::contactSize + p::contactPositionOffset], position, sizeof position);
  }
  const auto now = std::chrono::duration<double>(services.clock.systemUptime()).count();
  ++lastFrame;
  const auto callbacks = devices.front().callbacks;
  for (const auto callback : callbacks) {
    callback(&devices.front(), records.data(), static_cast<std::int32_t>(contacts.size()), now, lastFrame);
  }
}

void SimulatedFunctions::move(std::string_view function, const std::vector<std::int64_t>& windows, std::uint64_t to) {
  const auto space = static_cast<ManagedSpaceID>(to);
  if (services.state.ignoredMoves.contains(function) || !services.state.spaces.displayOf(space)) {
    return;
  }
  for (const auto number : windows) {
    if (auto* const moved = window(number)) {
      moved->spaces = {space};
    }
  }
}

std::vector<std::int64_t> SimulatedFunctions::windowNumbers(CFTypeRef list) const {
  const auto elements = services.coreFoundation.propertyList(list);
  std::vector<std::int64_t> numbers;
  for (const auto& element : elements.is_array() ? elements : PropertyList::array()) {
    if (element.is_number_integer()) {
      numbers.push_back(element);
    }
  }
  return numbers;
}

SimulatedWindow* SimulatedFunctions::window(std::int64_t number) const {
  return std::in_range<WindowNumber>(number) ? services.state.window(static_cast<WindowNumber>(number)) : nullptr;
}

PropertyList SimulatedCoreFoundation::propertyList(CFTypeRef object) {
  return object != nullptr ? static_cast<const CFValue*>(object)->value : PropertyList();
}

CFTypeRef SimulatedCoreFoundation::create(const PropertyList& value) {
  return new CFValue{value, {}};
}

CFTypeRef SimulatedCoreFoundation::createArray(std::vector<const void*> elements) {
  return new CFValue{{}, std::move(elements)};
}

std::vector<const void*> SimulatedCoreFoundation::elements(CFTypeRef array) {
  return array != nullptr ? static_cast<const CFValue*>(array)->elements : std::vector<const void*>();
}

void SimulatedCoreFoundation::CFRelease(CFTypeRef object) {
  delete static_cast<const CFValue*>(object);
}

}  // namespace tallowin
