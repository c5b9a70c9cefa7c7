#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "platform/xdg/desktop_entry.h"

namespace tallowin {

/// The words of an entry's Exec line with nothing expanded, the program first (Desktop Entry Specification, the Exec
/// key: quoting). Empty when the line is empty or a quote is not closed.
[[nodiscard]] std::vector<std::string> splitExec(std::string_view exec);

/// The program and its arguments for an entry that opens `arguments`, which are files or URLs. `file` is the entry's
/// own path. Of a field code that takes one argument the first is taken; arguments that no code takes are put at the
/// end. Empty when the line cannot be read or contains an unknown field code.
[[nodiscard]] std::vector<std::string> expandExec(const DesktopEntry& entry, const std::string& file,
                                                  const std::vector<std::string>& arguments);

}  // namespace tallowin
