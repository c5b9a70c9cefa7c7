#pragma once

#include <expected>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/processes.h"
#include "platform/xdg/application_index.h"

namespace tallowin {

/// Starts installed applications and programs. Main thread only.
class X11Launcher {
 public:
  X11Launcher(InstalledApplications& installed, Processes& processes) : installed_(installed), processes_(processes) {}

  /// Where an application is: its desktop entry, or the program of that name (or that name in lower case) for one that
  /// has no entry. The bundle identifiers of well-known browsers stand for their names on Linux.
  [[nodiscard]] std::optional<std::filesystem::path> find(std::string_view bundleIdentifier);

  /// The file to open for what a user may write for an application: a bundle path ("/Applications/Some App.app"), the
  /// id of a desktop entry with or without ".desktop", the name of a program or of an application. Everything else, and
  /// what is not found, as it stands.
  [[nodiscard]] std::filesystem::path resolve(const std::filesystem::path& application);

  /// Starts a desktop entry with these files or URLs, or a program with these arguments; anything else is opened as
  /// openURL() does. The error is one sentence.
  [[nodiscard]] std::expected<void, std::string> open(const std::filesystem::path& path,
                                                      const std::vector<std::string>& arguments);

  /// Asks an application that runs for another window: starts the action of its desktop entry that opens one, else
  /// itself again.
  [[nodiscard]] std::expected<void, std::string> openNewWindow(const std::filesystem::path& path);

  /// Hands a URL or a path to the desktop's default handler (xdg-open, else gio). False when neither can be started.
  bool openURL(const std::string& url);

  /// The picture file of a desktop entry's icon.
  [[nodiscard]] std::optional<std::filesystem::path> iconOf(const std::filesystem::path& entry);

 private:
  [[nodiscard]] std::optional<std::filesystem::path> findNamed(std::string_view name);
  [[nodiscard]] std::expected<void, std::string> openEntry(const std::filesystem::path& path, const DesktopEntry& entry,
                                                           const std::vector<std::string>& arguments);
  [[nodiscard]] std::expected<void, std::string> start(std::vector<std::string> words);

  InstalledApplications& installed_;
  Processes& processes_;
};

}  // namespace tallowin
