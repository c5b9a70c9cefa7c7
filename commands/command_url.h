#pragma once

#include <expected>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/url.h"
#include "commands/space_command.h"

namespace tallowin {

/// A query that names a key twice. Deliberately strict: whoever performs URLs ends the process on it.
struct DoubledQueryKey {
  std::string key;
  bool operator==(const DoubledQueryKey&) const = default;

  /// One line for the log and standard error.
  [[nodiscard]] std::string message() const { return "a URL names the query key \"" + key + "\" twice"; }
};

/// A URL that is understood, for people.
struct CommandURL {
  std::string_view host;
  std::string_view rest;  ///< what may follow the host, such as "/SPACE"
  std::string_view sentence;
};

/// All of them; what reads URLs uses the same table.
[[nodiscard]] std::vector<CommandURL> commandURLs();

/// The command that a URL of the form "tallowin://HOST[/PATH...][?QUERY]" stands for; nothing for any other URL and for
/// a host that is not understood. Pure; never looks at the Spaces.
[[nodiscard]] std::expected<std::optional<SpaceCommand>, DoubledQueryKey> commandFromURL(const URL& url);

/// Why a text is not performed, and one line that says so.
struct URLFault {
  enum class Kind {
    notURL,      ///< no URL at all
    unknown,     ///< a URL that is no command
    doubledKey,  ///< one whose query names a key twice, on which the process ends
    refused,     ///< a command that was understood, of which nothing was done
  };
  Kind kind = Kind::unknown;
  std::string message;
};

/// What a process ends with that was given such a text.
[[nodiscard]] int exitStatus(const URLFault& fault);

/// The command that the text of a tallowin:// URL stands for.
[[nodiscard]] std::expected<SpaceCommand, URLFault> commandFromText(const std::string& text);

}  // namespace tallowin
