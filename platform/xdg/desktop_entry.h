#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tallowin {

/// What the desktop entry of an application says (Desktop Entry Specification 1.5). Absent texts are empty.
struct DesktopEntry {
  std::string name;           ///< in the user's language where the entry has it
  std::string exec;           ///< the command line, see expandExec
  std::string newWindowExec;  ///< that of the action that opens another window; empty when it names none
  std::string tryExec;
  std::string icon;  ///< a name to look up or an absolute path
  std::string startupWMClass;
  std::vector<std::string> onlyShowIn;
  std::vector<std::string> notShowIn;
  bool hidden = false;  ///< the entry counts as deleted
  bool noDisplay = false;
  bool terminal = false;
  bool operator==(const DesktopEntry&) const = default;

  /// Whether menus of these desktops (XdgEnvironment::currentDesktops) offer it.
  [[nodiscard]] bool isOffered(const std::vector<std::string>& currentDesktops) const;
};

/// Reads a desktop entry. `localeTags` are the user's languages, best first. Nothing when the text has no
/// "[Desktop Entry]" group or describes no application. Lines that are not understood are passed over.
[[nodiscard]] std::optional<DesktopEntry> parseDesktopEntry(std::string_view text,
                                                            const std::vector<std::string>& localeTags);

/// The words of an entry's Exec line with nothing expanded, the program first (Desktop Entry Specification, the Exec
/// key: quoting). Empty when the line is empty or a quote is not closed.
[[nodiscard]] std::vector<std::string> splitExec(std::string_view exec);

/// The program and its arguments for an entry that opens `arguments`, which are files or URLs. `file` is the entry's
/// own path. Of a field code that takes one argument the first is taken; arguments that no code takes are put at the
/// end. Empty when the line cannot be read or contains an unknown field code.
[[nodiscard]] std::vector<std::string> expandExec(const DesktopEntry& entry, const std::string& file,
                                                  const std::vector<std::string>& arguments);

}  // namespace tallowin
