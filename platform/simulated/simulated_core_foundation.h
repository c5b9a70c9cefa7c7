#pragma once

#include <set>
#include <vector>

#include "platform/core_foundation.h"

namespace tallowin {

/// Counted objects as the simulated C functions take and return them. Each lives on the heap and is owned by its
/// references alone, so that one that is never released is a leak to a leak checker. Main thread only.
class SimulatedCoreFoundation : public CoreFoundation {
 public:
  PropertyList propertyList(CFTypeRef object) override;
  CFTypeRef create(const PropertyList& value) override;
  std::vector<const void*> elements(CFTypeRef array) override;
  /// Asserts that the object still exists; without assertions an object that does not is left alone.
  void CFRelease(CFTypeRef object) override;

  /// A new array of references that are no property lists.
  CFTypeRef createArray(std::vector<const void*> elements);

  /// How many objects there are. 0 when everything was released.
  [[nodiscard]] std::size_t liveObjects() const { return live_.size(); }

 private:
  struct Object;
  [[nodiscard]] const Object* find(CFTypeRef object) const;

  // Keeps watch without owning: after the desktop's end nothing refers to what was not released.
  std::set<CFTypeRef> live_;
};

}  // namespace tallowin
