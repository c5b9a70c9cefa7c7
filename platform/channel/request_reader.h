#pragma once

#include <expected>
#include <optional>
#include <string>
#include <string_view>

#include "platform/command_channel.h"

namespace tallowin {

/// The request that the bytes of a connection hold so far (channel_protocol.h): nothing while it is not complete. The
/// error is one line for the caller.
[[nodiscard]] std::expected<std::optional<Request>, std::string> readRequest(std::string_view arrived);

}  // namespace tallowin
