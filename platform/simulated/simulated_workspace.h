#pragma once

#include "base/broadcast_notification_center.h"
#include "platform/main_queue.h"
#include "platform/simulated/desktop_state.h"
#include "platform/simulated/journal.h"
#include "platform/workspace.h"

namespace tallowin {

/// The simulated applications: what the program asks of them is a line of the journal; the operations with a name of
/// their own are the hand of the user or of fate. Main thread only.
class SimulatedWorkspace : public Workspace {
 public:
  SimulatedWorkspace(DesktopState& state, MainQueue& queue, Journal& journal,
                     BroadcastNotificationCenter& notifications)
      : state_(state), queue_(queue), journal_(journal), notifications_(notifications) {}

  std::vector<RunningApplication> runningApplications() override;
  std::optional<RunningApplication> runningApplicationWithProcessIdentifier(ProcessID pid) override;
  std::vector<RunningApplication> runningApplicationsWithBundleIdentifier(std::string_view bundle) override;
  std::optional<RunningApplication> frontmostApplication() override;
  bool hide(ProcessID pid) override;
  bool unhide(ProcessID pid) override;
  bool activateWithOptions(ProcessID pid) override;
  std::optional<std::filesystem::path> URLForApplicationWithBundleIdentifier(std::string_view bundle) override;
  void openApplicationAtURL(const std::filesystem::path& application, const OpenConfiguration& configuration,
                            OpenCompletion completion) override;
  bool openURL(std::string_view url) override;
  std::optional<std::string> iconForFile(const std::filesystem::path& /*file*/) override { return std::nullopt; }

  /// Told when applications or their windows have become others.
  std::function<void()> onChange = [] {};

  /// Makes an application the active one; its windows come to the front in their order. False when it does not run.
  bool activate(ProcessID pid);
  /// Hides an application or shows it again. One that is hidden while active leaves that to the owner of the then
  /// frontmost window. False when it does not run.
  bool setHidden(ProcessID pid, bool hidden);
  /// Starts an application, which is installed then, too, and is not active yet. One that has this process id already
  /// is left as it is.
  void launch(SimulatedApplication application);
  /// Ends an application, with its windows. The owner of the then frontmost window becomes active.
  bool quit(ProcessID pid);

 private:
  void open(const std::filesystem::path& path, const OpenConfiguration& configuration,
            const OpenCompletion& completion);
  void activateFrontmostOwner();
  void tell(NotificationName name, ProcessID pid);

  DesktopState& state_;
  MainQueue& queue_;
  Journal& journal_;
  BroadcastNotificationCenter& notifications_;
};

}  // namespace tallowin
