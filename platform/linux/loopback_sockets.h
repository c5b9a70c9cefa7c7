#pragma once

#include <cstdint>
#include <expected>
#include <string>
#include <vector>

#include "platform/linux/owned_descriptor.h"

namespace tallowin {

/// Listening sockets of a port on 127.0.0.1 and, unless the machine has no such address, on ::1. They neither block nor
/// are inherited by children, and the port is free again at once when they have been closed. The error is the system's
/// description.
[[nodiscard]] std::expected<std::vector<OwnedDescriptor>, std::string> openLoopbackSockets(std::uint16_t port);

}  // namespace tallowin
