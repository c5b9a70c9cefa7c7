#include "platform/simulated/simulated_core_foundation.h"

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

}  // namespace tallowin
