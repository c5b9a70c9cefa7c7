#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "platform/identifiers.h"
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

/// An opened library. Null is none.
using LibraryHandle = void*;

/// An image (executable or library) that is loaded into this process.
struct LoadedImage {
  std::string path;
  std::span<const std::byte> bytes;  ///< from its header on, as mapped; valid while the image stays loaded
  std::int64_t slide = 0;            ///< how far it was moved from the addresses that it was linked for
  std::uint64_t loadAddress = 0;     ///< the address of bytes[0] in this process
};

/// Finds functions by name at run time (dlfcn.h, mach-o/dyld.h). Any thread.
class DynamicLoader {
 public:
  /// Mode bits of open(), with their values in the dlfcn.h of the system that the libraries belong to.
  static constexpr int lazy = 1;
  static constexpr int noLoad = 16;

  virtual ~DynamicLoader() = default;

  /// The library at `path`; null when it cannot be opened or, with `noLoad`, is not loaded already.
  virtual LibraryHandle open(std::string_view path, int mode) = 0;

  /// The address of a symbol in a library, or in the process's default namespace when `library` is null; null when
  /// there is none.
  virtual void* symbol(LibraryHandle library, std::string_view name) = 0;

  /// The loaded images, in load order; empty where the system does not tell.
  virtual std::vector<LoadedImage> loadedImages() = 0;
};

}  // namespace tallowin

/// The C signatures of the functions that are looked up by name at run time, and the places where they live. Errors are
/// CGError, OSStatus or AXError: 0 is success.
namespace tallowin::private_functions {

inline constexpr auto skyLight = "/System/Library/PrivateFrameworks/SkyLight.framework/SkyLight";
inline constexpr auto multitouchSupport =
    "/System/Library/PrivateFrameworks/MultitouchSupport.framework/MultitouchSupport";
inline constexpr auto hiServices =
    "/System/Library/Frameworks/ApplicationServices.framework/Frameworks/HIServices.framework/HIServices";

/// The internal entry point that performs a bridged window-management operation.
inline constexpr auto performBridgedOperation =
    "__ZL54SLSPerformAsynchronousBridgedWindowManagementOperationP47SLSAsynchronousBridgedWindowManagementOperation";

using Error = std::int32_t;

using MainConnectionID = ConnectionID (*)();
using CopyManagedDisplaySpaces = CFTypeRef (*)(ConnectionID);
using CopyActiveMenuBarDisplayIdentifier = CFTypeRef (*)(ConnectionID);
using GetActiveSpace = std::uint64_t (*)(ConnectionID);

/// Receives (event number, data, data length, the argument given at registration).
using ConnectionNotifyProc = void (*)(std::uint32_t, void*, std::size_t, void*);
using RegisterConnectionNotifyProc = Error (*)(ConnectionID, ConnectionNotifyProc, std::uint32_t event, void* argument);

/// Takes (hot key, out key-equivalent character, out virtual key code, out modifier flags).
using GetSymbolicHotKeyValue = Error (*)(std::uint32_t, std::uint16_t*, std::uint16_t*, std::uint64_t*);
using IsSymbolicHotKeyEnabled = bool (*)(std::uint32_t);
using SetSymbolicHotKeyEnabled = Error (*)(std::uint32_t, bool);

/// Takes (connection, Space mask, array of window numbers) and returns an array of managed Space ids.
using CopySpacesForWindows = CFTypeRef (*)(ConnectionID, std::int32_t, CFTypeRef);

/// Takes (AXUIElementRef, out window number).
using AXUIElementGetWindow = Error (*)(const void*, std::uint32_t*);

using MoveWindowsToManagedSpace = void (*)(ConnectionID, CFTypeRef windows, std::uint64_t space);
using SpaceSetCompatID = Error (*)(ConnectionID, std::uint64_t space, std::uint32_t compatID);
using SetWindowListWorkspace = Error (*)(ConnectionID, const std::uint32_t* windows, std::int32_t count,
                                         std::uint32_t workspace);
using PerformBridgedOperation = void (*)(void* operation);

using CoreDockSendNotification = void (*)(CFTypeRef name, void* argument);

/// Receives (device, contacts, contact count, time stamp in seconds, frame number). Returns 0.
using ContactFrameCallback = std::int32_t (*)(const void*, const void*, std::int32_t, double, std::int32_t);
using DeviceCreateList = CFTypeRef (*)();
using RegisterContactFrameCallback = void (*)(const void* device, ContactFrameCallback);
using DeviceStart = Error (*)(const void* device, std::int32_t mode);

/// A contact record of the multitouch framework is 96 bytes long; its normalised position, two 32-bit floats x and y,
/// starts at byte 32.
inline constexpr std::size_t contactSize = 96;
inline constexpr std::size_t contactPositionOffset = 32;

/// The Objective-C run time (objc/runtime.h, objc/message.h).
using GetClass = void* (*)(const char*);
using RegisterSelector = void* (*)(const char*);
using GetInstanceMethod = void* (*)(void* type, void* selector);
using Send = void* (*)(void* receiver, void* selector);
using SendInitWithWindows = void* (*)(void* receiver, void* selector, CFTypeRef windows, std::uint64_t space);

}  // namespace tallowin::private_functions
