#include "platform/simulated/simulated_objective_c.h"

#include <utility>

namespace tallowin {

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
