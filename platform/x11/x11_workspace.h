#pragma once

#include "platform/main_queue.h"
#include "platform/workspace.h"
#include "platform/x11/x11_applications.h"
#include "platform/x11/x11_launcher.h"
#include "platform/x11/x11_window_actions.h"

namespace tallowin {

/// Applications as far as they have windows: one that has none does not run. The "bundle identifier" is the desktop
/// entry's id (X11Application), and the URL of an application is its desktop entry's file. Main thread only.
class X11Workspace : public Workspace {
 public:
  X11Workspace(MainQueue& queue, X11Launcher& launcher, X11Applications& applications, X11WindowActions& actions)
      : queue_(queue), launcher_(launcher), applications_(applications), actions_(actions) {}

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

  std::optional<std::filesystem::path> URLForApplicationWithBundleIdentifier(std::string_view bundle) override;
  /// Takes what X11Launcher::resolve() does. Makes an application active that runs already, or asks it for another
  /// window, unless another instance is asked for or there are arguments to open.
  void openApplicationAtURL(const std::filesystem::path& application, const OpenConfiguration& configuration,
                            OpenCompletion completion) override;
  bool openURL(std::string_view url) override;
  std::optional<std::string> iconForFile(const std::filesystem::path& file) override;

 private:
  [[nodiscard]] std::optional<ProcessID> processOf(const std::filesystem::path& application);

  MainQueue& queue_;
  X11Launcher& launcher_;
  X11Applications& applications_;
  X11WindowActions& actions_;
};

}  // namespace tallowin
