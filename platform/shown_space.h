#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace tallowin {

/// What the user is shown of a Space.
struct ShownSpace {
  std::string id;
  std::string name;
  std::optional<std::int64_t> desktopNumber;  ///< counted from 1; full-screen Spaces have none
  std::string symbol;                         ///< name of a system symbol image
  bool operator==(const ShownSpace&) const = default;
};

}  // namespace tallowin
