#pragma once

#include <expected>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/processes.h"
#include "platform/xdg/installed_applications.h"

namespace tallowin {

/// Starts installed applications and programs. Main thread only.
class X11Launcher {
 public:
  X11Launcher(InstalledApplications& installed, Processes& processes) : installed_(installed), processes_(processes) {}

  /// Where an application is: its desktop entry, or the program of that name (or that name in lower case) for one that
  /// has no entry.
  [[nodiscard]] std::optional<std::filesystem::path> find(std::string_view bundleIdentifier);

  /// Starts a desktop entry with these files or URLs, or a program with these arguments; anything else is opened as
  /// openURL() does. The error is one sentence.
  [[nodiscard]] std::expected<void, std::string> open(const std::filesystem::path& path,
                                                      const std::vector<std::string>& arguments);

  /// Hands a URL or a path to the desktop's default handler (xdg-open). False when that cannot be started.
  bool openURL(const std::string& url);

  /// The picture file of a desktop entry's icon.
  [[nodiscard]] std::optional<std::filesystem::path> iconOf(const std::filesystem::path& entry);

 private:
  [[nodiscard]] std::expected<void, std::string> openEntry(const std::filesystem::path& path,
                                                           const std::vector<std::string>& arguments);
  [[nodiscard]] std::expected<void, std::string> start(std::vector<std::string> words);

  InstalledApplications& installed_;
  Processes& processes_;
};

}  // namespace tallowin
