#pragma once

#include <utility>

#include "platform/core_foundation.h"

namespace tallowin {

/// Owns one reference to a CoreFoundation object, or none.
class CFObject {
 public:
  CFObject(CoreFoundation& coreFoundation, CFTypeRef owned) : coreFoundation_(coreFoundation), object_(owned) {}
  CFObject(const CFObject&) = delete;
  CFObject& operator=(const CFObject&) = delete;
  ~CFObject() { coreFoundation_.CFRelease(object_); }

  [[nodiscard]] CFTypeRef get() const { return object_; }
  [[nodiscard]] explicit operator bool() const { return object_ != nullptr; }
  [[nodiscard]] PropertyList propertyList() const { return coreFoundation_.propertyList(object_); }

 private:
  CoreFoundation& coreFoundation_;
  const CFTypeRef object_;
};

}  // namespace tallowin
