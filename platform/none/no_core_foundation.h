#pragma once

#include "platform/core_foundation.h"

namespace tallowin {

/// For systems without CoreFoundation: there are no objects.
class NoCoreFoundation : public CoreFoundation {
 public:
  PropertyList propertyList(CFTypeRef /*object*/) override { return nullptr; }
  CFTypeRef create(const PropertyList& /*value*/) override { return nullptr; }
  std::vector<const void*> elements(CFTypeRef /*array*/) override { return {}; }
  void CFRelease(CFTypeRef /*object*/) override {}
};

}  // namespace tallowin
