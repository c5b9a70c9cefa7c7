#pragma once

#include <cstddef>
#include <cstdint>

#include "platform/core_foundation.h"
#include "platform/identifiers.h"

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
