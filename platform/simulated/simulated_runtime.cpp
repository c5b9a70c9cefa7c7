#include "platform/simulated/simulated_runtime.h"

#include <cassert>
#include <memory>
#include <utility>

namespace tallowin {

struct SimulatedCoreFoundation::Object {
  PropertyList value;
  std::vector<const void*> elements;
};

const SimulatedCoreFoundation::Object* SimulatedCoreFoundation::find(CFTypeRef object) const {
  return live_.contains(object) ? static_cast<const Object*>(object) : nullptr;
}

PropertyList SimulatedCoreFoundation::propertyList(CFTypeRef object) {
  const auto* const found = find(object);
  return found != nullptr ? found->value : PropertyList();
}

CFTypeRef SimulatedCoreFoundation::create(const PropertyList& value) {
  return *live_.insert(new Object{value, {}}).first;
}

CFTypeRef SimulatedCoreFoundation::createArray(std::vector<const void*> elements) {
  return *live_.insert(new Object{{}, std::move(elements)}).first;
}

std::vector<const void*> SimulatedCoreFoundation::elements(CFTypeRef array) {
  const auto* const found = find(array);
  return found != nullptr ? found->elements : std::vector<const void*>();
}

void SimulatedCoreFoundation::CFRelease(CFTypeRef object) {
  if (object == nullptr) {
    return;
  }
  // Nothing here retains, so that the one reference is the object's life.
  const std::unique_ptr<const Object> released(find(object));
  assert(released != nullptr && "released too often");
  live_.erase(object);
}

struct SimulatedObjectiveC::Operation {
  PropertyList windows;
  std::uint64_t space = 0;
};

SimulatedObjectiveC::SimulatedObjectiveC(CoreFoundation& coreFoundation, bool hasOperationClass)
    : coreFoundation_(coreFoundation), hasOperationClass_(hasOperationClass) {}

SimulatedObjectiveC::~SimulatedObjectiveC() = default;

void* SimulatedObjectiveC::getClass(std::string_view name) {
  // The one class is the run time itself, which is as good an address as any.
  return hasOperationClass_ && name == operationClass ? this : nullptr;
}

void* SimulatedObjectiveC::registerSelector(std::string_view name) {
  return const_cast<std::string*>(&*selectors_.emplace(name).first);
}

void* SimulatedObjectiveC::getInstanceMethod(void* type, void* selector) {
  return type == this && selector == registerSelector(initialiser) ? selector : nullptr;
}

void* SimulatedObjectiveC::send(void* receiver, void* selector, CFTypeRef windows, std::uint64_t space) {
  if (receiver == this && selector == registerSelector("alloc")) {
    auto operation = std::make_unique<Operation>();
    auto* const reference = operation.get();
    operations_[reference] = std::move(operation);
    return reference;
  }
  const auto found = operations_.find(receiver);
  if (found == operations_.end()) {
    return nullptr;
  }
  if (selector == registerSelector(initialiser)) {
    *found->second = {coreFoundation_.propertyList(windows), space};
    return receiver;
  }
  if (selector == registerSelector("release")) {
    operations_.erase(found);
  }
  return nullptr;
}

void SimulatedObjectiveC::performOperation(void* operation, const Perform& perform) {
  if (const auto found = operations_.find(operation); found != operations_.end()) {
    perform(found->second->windows, found->second->space);
  }
}

}  // namespace tallowin
