#pragma once

#include <functional>

#include "platform/desktop.h"
#include "platform/displays.h"
#include "platform/events.h"
#include "platform/global_hot_keys.h"
#include "platform/images.h"
#include "platform/messages.h"
#include "platform/notification_center.h"
#include "platform/pasteboard.h"
#include "platform/system.h"
#include "platform/ways_in.h"
#include "platform/windows.h"
#include "platform/workspace.h"

namespace tallowin {

/// The services of a machine without a desktop: every operation answers its neutral result. A platform that offers only
/// some operations of a service derives from these.

class NeutralDesktop : public AskedDesktop {
 public:
  std::optional<DesktopReading> read() override { return {}; }
  std::optional<ManagedSpaceID> activeSpace() override { return {}; }
  CGSBridgeHealth health() override { return {}; }
  bool observe(std::function<void(const DesktopSign&)> /*observer*/) override { return false; }
  std::optional<std::vector<ManagedSpaceID>> spacesOfWindow(WindowNumber /*window*/) override { return {}; }
  bool moveWindow(WindowNumber /*window*/, ManagedSpaceID /*space*/) override { return false; }
  DesktopAbilities abilities() override { return {}; }
  bool switchTo(ManagedSpaceID /*space*/) override { return false; }
  void addSpace(const std::string& /*display*/, Completion completion) override {
    completion(std::unexpected(DesktopRefusal::unable));
  }
  void removeSpace(ManagedSpaceID /*space*/, Completion completion) override {
    completion(std::unexpected(DesktopRefusal::unable));
  }
};

class NeutralWindows : public Windows {
 public:
  std::optional<std::vector<DesktopWindow>> list(WindowScope /*scope*/) override { return {}; }
  std::optional<DesktopWindow> window(WindowNumber /*window*/) override { return {}; }
  std::optional<WindowNumber> focused(ProcessID /*pid*/) override { return {}; }
  bool mayChange() override { return false; }
  bool raise(const WindowRef& /*window*/) override { return false; }
  bool setFrame(const WindowRef& /*window*/, const CGRect& /*frame*/) override { return false; }
  bool minimize(const WindowRef& /*window*/) override { return false; }
  bool unminimize(const WindowRef& /*window*/) override { return false; }
  bool close(const WindowRef& /*window*/, Duration /*patience*/) override { return false; }
  bool observe(std::function<void()> /*observer*/) override { return true; }  // nothing ever changes
};

class NeutralEvents : public Events {
 public:
  CGEventPtr CGEventCreate() override { return nullptr; }
  CGEventPtr CGEventCreateKeyboardEvent(VirtualKeyCode /*keyCode*/, bool /*down*/) override { return nullptr; }
  CGEventPtr CGEventCreateMouseEvent(CGMouseEventType /*type*/, CGPoint /*location*/) override { return nullptr; }
  CGEventPtr CGEventCreateFromData(std::string_view /*data*/) override { return nullptr; }
  std::string CGEventCreateData(const CGEvent& /*event*/) override { return {}; }
  void CGEventSetFlags(CGEvent& /*event*/, std::uint64_t /*flags*/) override {}
  void CGEventSetIntegerValueField(CGEvent& /*event*/, CGEventField /*field*/, std::int64_t /*value*/) override {}
  void CGEventSetDoubleValueField(CGEvent& /*event*/, CGEventField /*field*/, double /*value*/) override {}
  double CGEventGetDoubleValueField(const CGEvent& /*event*/, CGEventField /*field*/) override { return 0; }
  std::uint64_t CGEventGetTimestamp(const CGEvent& /*event*/) override { return 0; }
  CGPoint CGEventGetLocation(const CGEvent& /*event*/) override { return {}; }
  void CGEventPost(CGEventTap /*tap*/, const CGEvent& /*event*/) override {}
  void CGWarpMouseCursorPosition(CGPoint /*position*/) override {}
  std::uint32_t pressedMouseButtons() override { return 0; }
  CGPoint mouseLocation() override { return {}; }
};

class NeutralDisplays : public Displays {
 public:
  DisplayID CGMainDisplayID() override { return 0; }
  CGRect CGDisplayBounds(DisplayID /*display*/) override { return {}; }
  DisplayID CGDisplayGetDisplayIDFromUUID(std::string_view /*uuid*/) override { return 0; }
  bool CGDisplayIsBuiltin(DisplayID /*display*/) override { return false; }
  std::vector<Screen> screens() override { return {}; }
  std::vector<std::string> displaySetIdentifiers() override { return {}; }
  std::vector<Monitor> monitors() override { return {}; }
};

class NeutralDesktopNames : public DesktopNames {
 public:
  void publish(const std::map<ManagedSpaceID, std::string>& /*names*/) override {}
  const std::map<ManagedSpaceID, std::string>& ownNames() override { return none_; }
  Subscription observeOwnNames(std::function<void()> /*observer*/) override { return {}; }

 private:
  const std::map<ManagedSpaceID, std::string> none_;
};

class NeutralSpacePlaces : public SpacePlaces {
 public:
  std::optional<std::vector<ManagedSpaceID>> places() override { return {}; }
  std::vector<ManagedSpaceID> parked() override { return {}; }
  void adopt(const std::vector<ManagedSpaceID>& /*spaces*/) override {}
  bool restore(const std::vector<ManagedSpaceID>& /*spaces*/) override { return false; }
};

/// The facts where there is no desktop.
class NoDesktopFacts : public DesktopFacts {
 public:
  /// `reason` answers why, in one sentence without its full stop. It is asked when somebody wants to know.
  explicit NoDesktopFacts(std::function<std::string()> reason) : reason_(std::move(reason)) {}

  std::optional<WindowManagerFacts> windowManager() override { return {}; }
  std::vector<SetUpCheck> checks() override {
    return {{"Display", false, "There are no desktops here: " + reason_() + ".",
             "Run Tallowin in an X11 session with a window manager; docs/window-managers.md lists those that work."}};
  }

 private:
  const std::function<std::string()> reason_;
};

class NeutralWorkspace : public Workspace {
 public:
  std::vector<RunningApplication> runningApplications() override { return {}; }
  std::optional<RunningApplication> runningApplicationWithProcessIdentifier(ProcessID /*pid*/) override { return {}; }
  std::vector<RunningApplication> runningApplicationsWithBundleIdentifier(std::string_view /*bundle*/) override {
    return {};
  }
  std::optional<RunningApplication> frontmostApplication() override { return {}; }
  bool hide(ProcessID /*pid*/) override { return false; }
  bool unhide(ProcessID /*pid*/) override { return false; }
  bool activateWithOptions(ProcessID /*pid*/) override { return false; }
  std::optional<std::filesystem::path> URLForApplicationWithBundleIdentifier(std::string_view /*bundle*/) override {
    return {};
  }
  void openApplicationAtURL(const std::filesystem::path& /*application*/, const OpenConfiguration& /*configuration*/,
                            OpenCompletion completion) override {
    completion(std::unexpected("applications cannot be opened without a desktop"));
  }
  bool openURL(std::string_view /*url*/) override { return false; }
  std::optional<std::string> iconForFile(const std::filesystem::path& /*file*/) override { return {}; }
};

class NeutralAlerts : public Alerts {
 public:
  void show(const Alert& /*alert*/, std::function<void(std::optional<std::size_t>)> answered) override {
    answered(std::nullopt);
  }
  std::expected<std::string, std::string> answer(std::string_view /*button*/) override {
    return std::unexpected("nothing is asked");
  }
};

class NeutralPasteboard : public Pasteboard {
 public:
  bool setString(std::string_view /*text*/) override { return false; }
};

class NeutralGlobalHotKeys : public GlobalHotKeys {
 public:
  std::unique_ptr<HotKey> registerHotKey(VirtualKeyCode /*keyCode*/, std::uint64_t /*modifierFlags*/,
                                         std::function<void()> /*pressed*/) override {
    return std::make_unique<MissingHotKey>();
  }
  void retry() override {}

 private:
  class MissingHotKey : public HotKey {
   public:
    HotKeyState state() override { return HotKeyState::missingKey; }
  };
};

class NeutralAppleScript : public AppleScript {
 public:
  std::optional<std::vector<std::string>> executeAndReturnError(std::string_view /*source*/) override { return {}; }
};

class NeutralURLEvents : public URLEvents {
 public:
  void setHandler(std::function<void(const std::string& text)> /*handler*/) override {}
};

class NeutralCommandChannel : public CommandChannel {
 public:
  void setHandler(Handler /*handler*/) override {}
};

class NeutralScriptEvents : public ScriptEvents {
 public:
  void setHandlers(Handlers /*handlers*/) override {}
};

class NeutralDesktopService : public DesktopService {
 public:
  Subscription offer(ServiceDescription /*description*/, Handlers /*handlers*/) override { return {}; }
  void tellChanged(const std::string& /*interface*/, const std::vector<std::string>& /*properties*/) override {}
};

class NeutralNotificationCenter : public NotificationCenter {
 public:
  Subscription addObserver(NotificationName /*name*/, std::function<void(const Notification&)> /*observer*/) override {
    return {};
  }
};

class NeutralScreenCapture : public ScreenCapture {
 public:
  bool CGPreflightScreenCaptureAccess() override { return false; }
  std::optional<Image> captureDisplay(DisplayID /*display*/) override { return {}; }
};

}  // namespace tallowin
