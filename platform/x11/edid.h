#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace tallowin {

/// What tells a monitor from every other one: its maker, product and serial number, and the serial text where it has
/// one, such as "DEL-40F3-0001E240-7MT0167B2YNL". Nothing when the bytes do not begin with a well-formed base block
/// (VESA E-EDID, 128 bytes with a checksum).
[[nodiscard]] std::optional<std::string> monitorIdentity(std::string_view edid);

}  // namespace tallowin
