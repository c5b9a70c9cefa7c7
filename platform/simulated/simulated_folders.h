#pragma once

#include <string>
#include <string_view>

#include "platform/folders.h"

namespace tallowin {

/// The simulated user's folders, all below "/home/user".
[[nodiscard]] const Folders& simulatedFolders();

/// An absolute path of the simulated machine: "~" at the beginning stands for the home folder. Empty when the text is
/// no such path.
[[nodiscard]] std::string simulatedPath(std::string_view text);

}  // namespace tallowin
