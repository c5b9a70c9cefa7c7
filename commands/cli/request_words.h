#pragma once

#include <expected>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace tallowin {

/// What the running instance can be asked for.
enum class RequestKind {
  start,        ///< nothing more than that it runs
  url,          ///< to perform a tallowin:// URL
  command,      ///< to perform a command that is given in words
  list,         ///< the Spaces
  current,      ///< the active Space
  watch,        ///< the Spaces, and every change
  windows,      ///< the windows of the active Space, or of all
  savedSpaces,  ///< the Spaces that were saved and closed
  reopen,       ///< to open one of these again
  pin,          ///< that new windows of an application belong on a Space
  unpin,        ///< that they do not any more
  mark,         ///< to mark the front window with a letter
  jump,         ///< to go to the window marked with a letter
  profile,      ///< to keep, change to or list whole sets of names
  layTemplate,  ///< to lay down, import or list templates
  edit,         ///< to change what is said of a Space
  automation,   ///< to show, change or run a Space's automation
  time,         ///< the time spent in each Space
  exportFile,   ///< to write everything that is configured to a file
  importFile,   ///< to take such a file over
  shortcuts,    ///< the key combinations, and how each stands
  restore,      ///< to list the copies of what was configured before, or to put one back
  diagnostics,  ///< the report for support requests
  doctor,       ///< what works here, what does not, and what to do about it
  menu,         ///< what the menu of the status item has
  askNote,      ///< to open the dialog for a Space's note
  ui,           ///< to hear what the process says that shows the windows
  answer,       ///< to take this as the answer to an open question
  quit,         ///< to end
};

/// How a request stands to the Spaces, and to a program that does not run yet.
enum class RequestNature {
  action,   ///< does something, for which the program is started when none runs
  query,    ///< tells something, which holds after everything that was done before
  control,  ///< is about the running program itself, and waits for nothing
};

/// The words of a request, understood.
struct RequestWords {
  RequestKind kind = RequestKind::start;
  std::vector<std::string> operands;           ///< what follows the word, or the URL
  std::map<std::string, std::string> options;  ///< such as "--json", with what follows those that take a value
  std::string_view command = {};               ///< for RequestKind::command, the host of the URL that it stands for
  bool operator==(const RequestWords&) const = default;

  [[nodiscard]] RequestNature nature() const;
  [[nodiscard]] bool has(const std::string& option) const { return options.contains(option); }
  [[nodiscard]] bool json() const { return has("--json"); }
  [[nodiscard]] bool namesOnly() const { return has("--names"); }
};

/// A word that a request begins with, declared once: what reads requests, --help, the manual and shells' completions
/// use the same table.
struct RequestWord {
  std::string_view name;
  RequestKind kind;
  RequestNature nature;
  std::string_view operands;      ///< as a usage line names them, separated by blanks; optional ones in brackets
  std::string_view options;       ///< separated by bars, each with the name of its value if it takes one
  std::string_view sentence;      ///< what it does, for people
  std::string_view command = {};  ///< for RequestKind::command, the host of the URL that it stands for
};

/// All words, in the order in which they are listed.
[[nodiscard]] std::span<const RequestWord> requestWordTable();

/// The operands, as they are named in the table.
[[nodiscard]] std::vector<std::string> operandsOf(const RequestWord& word);

/// The options, each with the name of its value behind a blank if it takes one.
[[nodiscard]] std::vector<std::string> optionsOf(const RequestWord& word);

/// The word with what may follow it, such as "list [--json]".
[[nodiscard]] std::string usageOf(const RequestWord& word);

/// Reads the words. The error is one line that says what is wrong and what would be right.
[[nodiscard]] std::expected<RequestWords, std::string> readRequestWords(std::span<const std::string> words);

}  // namespace tallowin
