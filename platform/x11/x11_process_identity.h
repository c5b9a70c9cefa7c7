#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/identifiers.h"

namespace tallowin {

/// What is known about the process that a window belongs to.
struct ProcessEvidence {
  std::optional<std::uint32_t> named;   ///< _NET_WM_PID, which the client says of itself
  std::string machine;                  ///< WM_CLIENT_MACHINE; empty when the client does not say
  std::optional<std::uint32_t> server;  ///< the process at the other end of the client's connection (X-Resource 1.2)
  bool operator==(const ProcessEvidence&) const = default;
};

/// Process ids that stand for something else begin here: above every real one (proc(5), pid_max is at most 2^22), and
/// positive, as callers take negative ones for applications that are not running.
inline constexpr ProcessID firstStandInPid = 1 << 30;

/// The names under which clients on this machine may give it: the host name, whole and up to its first dot, and
/// "localhost".
[[nodiscard]] std::vector<std::string> localMachineNames();

/// The process on this machine that a window belongs to. The server's word holds before the client's, which in a
/// container is a number of that container. Nothing for windows of other machines and where there is no evidence.
[[nodiscard]] std::optional<ProcessID> processOf(const ProcessEvidence& evidence,
                                                 const std::vector<std::string>& localNames);

/// The number that stands for the process of a window whose process is not known: the same for all windows of one
/// client of the server, for as long as that client is connected. `resourceMask` is the server's resource-id mask.
[[nodiscard]] ProcessID standInPid(std::uint32_t window, std::uint32_t resourceMask);

/// The file name of the program that a process runs; empty when that cannot be seen.
[[nodiscard]] std::string programName(ProcessID pid);

}  // namespace tallowin
