#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <string_view>
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

/// As much of the Objective-C run time as the bridged window moves need: one class, whose objects hold the windows and
/// the Space that they were initialised with. Main thread only.
class SimulatedObjectiveC {
 public:
  static constexpr std::string_view operationClass = "SLSBridgedMoveWindowsToManagedSpaceOperation";
  static constexpr std::string_view initialiser = "initWithWindows:spaceID:";

  /// Receives the windows and the Space of an operation that is to be performed.
  using Perform = std::function<void(const PropertyList& windows, std::uint64_t space)>;

  SimulatedObjectiveC(CoreFoundation& coreFoundation, bool hasOperationClass);
  ~SimulatedObjectiveC();
  SimulatedObjectiveC(const SimulatedObjectiveC&) = delete;
  SimulatedObjectiveC& operator=(const SimulatedObjectiveC&) = delete;

  [[nodiscard]] void* getClass(std::string_view name);
  [[nodiscard]] void* registerSelector(std::string_view name);
  [[nodiscard]] void* getInstanceMethod(void* type, void* selector);

  /// Answers alloc (to the class), initWithWindows:spaceID: and release (to an object); null for everything else.
  void* send(void* receiver, void* selector, CFTypeRef windows, std::uint64_t space);

  /// Hands what the operation holds to `perform`; nothing for an object that does not exist.
  void performOperation(void* operation, const Perform& perform);

  /// How many objects have been made and not released.
  [[nodiscard]] std::size_t liveObjects() const { return operations_.size(); }

 private:
  struct Operation;

  CoreFoundation& coreFoundation_;
  const bool hasOperationClass_;
  std::set<std::string, std::less<>> selectors_;  // a selector is the address of its name
  std::map<void*, std::unique_ptr<Operation>> operations_;
};

}  // namespace tallowin
