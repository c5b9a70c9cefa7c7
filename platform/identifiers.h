#pragma once

#include <cstdint>

namespace tallowin {

/// The window server's number of a window (CGWindowID). 0 names no window.
using WindowNumber = std::uint32_t;

/// The window server's number of a Space ("ManagedSpaceID").
using ManagedSpaceID = std::int64_t;

/// A connection to the window server (CGSConnectionID). 0 means there is none.
using ConnectionID = std::uint32_t;

/// A display as CoreGraphics numbers it (CGDirectDisplayID). 0 is kCGNullDirectDisplay, no display.
using DisplayID = std::uint32_t;

/// A process id as the platform reports it (pid_t).
using ProcessID = std::int32_t;

/// A virtual key code of the ANSI keyboard (HIToolbox/Events.h, kVK_ANSI_*).
using VirtualKeyCode = std::uint16_t;

}  // namespace tallowin
