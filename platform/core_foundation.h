#pragma once

#include <vector>

#include "platform/property_list.h"

namespace tallowin {

/// A counted reference to a CoreFoundation object; null is none.
using CFTypeRef = const void*;

/// What passes between C functions of the system and property lists. Main thread only, except CFRelease and the
/// conversions, which any thread may call.
class CoreFoundation {
 public:
  virtual ~CoreFoundation() = default;

  /// A copy of the object as a property list; null for a null reference and for objects of other kinds.
  virtual PropertyList propertyList(CFTypeRef object) = 0;

  /// A new object with one reference, which the caller releases; null when it cannot be made. Integers become 32-bit
  /// signed numbers where they fit, else 64-bit ones.
  virtual CFTypeRef create(const PropertyList& value) = 0;

  /// The elements of an array of references that are no property lists, such as devices. Borrowed from the array.
  virtual std::vector<const void*> elements(CFTypeRef array) = 0;

  /// Gives up one reference. A null reference is ignored.
  virtual void CFRelease(CFTypeRef object) = 0;
};

}  // namespace tallowin
