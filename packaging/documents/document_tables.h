#pragma once

#include <map>
#include <string>

namespace tallowin {

/// What stands in a document for a placeholder, by the placeholder's name. Made from the program's own tables, so that
/// documents say what the program does.
using DocumentTables = std::map<std::string, std::string>;

/// For manual pages, in roff(7) with the man(7) macros.
[[nodiscard]] DocumentTables manualTables();

/// For completions in shells of the Bourne family (bash, zsh).
[[nodiscard]] DocumentTables shellTables();

/// For pages in Markdown.
[[nodiscard]] DocumentTables markdownTables();

/// For completions in fish.
[[nodiscard]] DocumentTables fishTables();

}  // namespace tallowin
