#pragma once

#include <expected>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/identifiers.h"

namespace tallowin {

/// Whether an application has a Dock icon (NSRunningApplication.h, NSApplicationActivationPolicy).
enum class ActivationPolicy { regular = 0, accessory = 1, prohibited = 2 };

/// A running application as it was when asked for (NSRunningApplication).
struct RunningApplication {
  ProcessID pid = 0;
  std::optional<std::string> bundleIdentifier;
  std::optional<std::string> localizedName;
  ActivationPolicy activationPolicy = ActivationPolicy::regular;
  bool isActive = false;
  bool isHidden = false;
  bool operator==(const RunningApplication&) const = default;
};

/// How to open an application (NSWorkspaceOpenConfiguration).
struct OpenConfiguration {
  bool activates = true;
  bool createsNewApplicationInstance = false;
  /// An application that runs already is asked for another window, where the desktop knows how to. Elsewhere it is
  /// opened as without this.
  bool opensNewWindow = false;
  std::vector<std::string> arguments;
};

/// Told how opening went: nothing, or the system's description of the failure. Runs on the main thread.
using OpenCompletion = std::function<void(std::expected<void, std::string>)>;

/// Applications and what they open, under the names of NSWorkspace and NSRunningApplication. Main thread only, except
/// runningApplicationWithProcessIdentifier(), which any thread may call.
class Workspace {
 public:
  virtual ~Workspace() = default;

  virtual std::vector<RunningApplication> runningApplications() = 0;
  virtual std::optional<RunningApplication> runningApplicationWithProcessIdentifier(ProcessID pid) = 0;
  virtual std::vector<RunningApplication> runningApplicationsWithBundleIdentifier(std::string_view bundle) = 0;
  /// The application that receives key events, or nothing.
  virtual std::optional<RunningApplication> frontmostApplication() = 0;

  /// Each answers whether the application still exists and the request was sent.
  virtual bool hide(ProcessID pid) = 0;
  virtual bool unhide(ProcessID pid) = 0;
  virtual bool activateWithOptions(ProcessID pid) = 0;

  /// Where the application with this bundle identifier is installed, or nothing.
  virtual std::optional<std::filesystem::path> URLForApplicationWithBundleIdentifier(std::string_view bundle) = 0;
  virtual void openApplicationAtURL(const std::filesystem::path& application, const OpenConfiguration& configuration,
                                    OpenCompletion completion) = 0;
  /// Opens a URL or a "file://" URL with its default handler. False when there is none.
  virtual bool openURL(std::string_view url) = 0;

  /// The icon of an application or file as PNG bytes; nothing when there is none.
  virtual std::optional<std::string> iconForFile(const std::filesystem::path& file) = 0;
};

/// Scripts that ask other applications (NSAppleScript). Main thread only.
class AppleScript {
 public:
  virtual ~AppleScript() = default;

  /// Runs a script to its end and returns the texts of its result: the items of a list, or the one value. Nothing when
  /// it fails or the system has no such scripts.
  virtual std::optional<std::vector<std::string>> executeAndReturnError(std::string_view source) = 0;
};

}  // namespace tallowin
