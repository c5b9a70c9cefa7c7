#pragma once

#include "platform/main_queue.h"
#include "platform/processes.h"
#include "platform/workspace.h"
#include "platform/x11/x11_applications.h"
#include "platform/x11/x11_window_actions.h"
#include "platform/xdg/application_index.h"

namespace tallowin {

/// Applications as far as they have windows: one that has none does not run. The "bundle identifier" is the desktop
/// entry's id (X11Application), and the URL of an application is its desktop entry's file. Main thread only.
class X11Workspace : public Workspace {
 public:
  X11Workspace(MainQueue& queue, Processes& processes, InstalledApplications& installed, X11Applications& applications,
               X11WindowActions& actions)
      : queue_(queue), processes_(processes), installed_(installed), applications_(applications), actions_(actions) {}

  std::vector<RunningApplication> runningApplications() override;
  std::optional<RunningApplication> runningApplicationWithProcessIdentifier(ProcessID pid) override;
  std::vector<RunningApplication> runningApplicationsWithBundleIdentifier(std::string_view bundle) override;
  /// The owner of the active window; nothing while that is one of this program.
  std::optional<RunningApplication> frontmostApplication() override;

  /// Minimises all its windows, and remembers which.
  bool hide(ProcessID pid) override;
  /// Brings back the windows that hide() minimised.
  bool unhide(ProcessID pid) override;
  /// Makes the window that was raised last active, else its frontmost one on the desktop in front, else its
  /// frontmost one on any, to whose desktop it switches.
  bool activateWithOptions(ProcessID pid) override;

  /// Its desktop entry, or the program of that name (or that name in lower case) for one that has no entry. The bundle
  /// identifiers of well-known browsers stand for their names on Linux.
  std::optional<std::filesystem::path> URLForApplicationWithBundleIdentifier(std::string_view bundle) override;
  /// Takes what a user may write for an application: a bundle path ("/Applications/Some App.app"), the id of a desktop
  /// entry with or without ".desktop", the name of a program or of an application, or a file. Makes an application
  /// active that runs already, or asks it for another window (by the action of its desktop entry that opens one, else
  /// by starting it again), unless another instance is asked for or there are arguments to open.
  void openApplicationAtURL(const std::filesystem::path& application, const OpenConfiguration& configuration,
                            OpenCompletion completion) override;
  /// By xdg-open, else gio. False when neither can be started.
  bool openURL(std::string_view url) override;
  std::optional<std::string> iconForFile(const std::filesystem::path& file) override;

 private:
  [[nodiscard]] std::optional<ProcessID> processOf(const std::filesystem::path& application);
  [[nodiscard]] std::optional<std::filesystem::path> findNamed(std::string_view name);
  /// The file to open for what a user wrote; what is not found as it stands.
  [[nodiscard]] std::filesystem::path resolve(const std::filesystem::path& application);
  /// Starts a desktop entry with these files or URLs, or a program with these arguments; anything else is opened as by
  /// openURL(). The error is one sentence.
  [[nodiscard]] std::expected<void, std::string> open(const std::filesystem::path& path,
                                                      const std::vector<std::string>& arguments, bool newWindow);
  [[nodiscard]] std::expected<void, std::string> openEntry(const std::filesystem::path& path, const DesktopEntry& entry,
                                                           const std::vector<std::string>& arguments);
  [[nodiscard]] std::expected<void, std::string> start(std::vector<std::string> words);

  MainQueue& queue_;
  Processes& processes_;
  InstalledApplications& installed_;
  X11Applications& applications_;
  X11WindowActions& actions_;
};

}  // namespace tallowin
