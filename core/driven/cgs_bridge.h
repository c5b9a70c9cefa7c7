#pragma once

#include <atomic>
#include <mutex>

#include "core/driven/private_function.h"
#include "core/driven/window_moves.h"
#include "platform/private_functions.h"
#include "platform/window_server.h"

namespace tallowin {

/// The window server through its private functions, each looked up by name at its first use. Its names moved from CGS
/// to SLS between system releases, so most are tried under both. A function that is missing stays missing.
class CGSBridge : public WindowServer {
 public:
  CGSBridge(DynamicLoader& loader, CoreFoundation& coreFoundation);
  CGSBridge(const CGSBridge&) = delete;
  CGSBridge& operator=(const CGSBridge&) = delete;
  ~CGSBridge() override;

  ConnectionID CGSBridgeConnection() override;
  std::optional<PropertyList> CGSBridgeCopyManagedDisplaySpaces() override;
  std::optional<std::string> CGSBridgeCopyActiveMenuBarDisplayIdentifier() override;
  std::uint64_t CGSBridgeActiveSpace() override;
  bool CGSBridgeRegisterSpaceNotifications(SpaceNotificationCallback callback) override;
  std::optional<SymbolicHotKeyBinding> CGSBridgeGetSymbolicHotKey(int hotKey) override;
  bool CGSBridgeIsSymbolicHotKeyEnabled(int hotKey) override;
  bool CGSBridgeSetSymbolicHotKeyEnabled(int hotKey, bool enabled) override;
  CGSBridgeHealth CGSBridgeProbe() override;
  std::optional<std::vector<ManagedSpaceID>> CGSBridgeCopySpacesForWindow(WindowNumber window) override;
  std::optional<WindowNumber> CGSBridgeAXWindowID(const AXUIElement& element) override;
  bool CGSBridgeMoveWindowToSpace(WindowNumber window, ManagedSpaceID space) override;
  bool CGSBridgeDockNotify(std::string_view notification) override;
  bool CGSBridgeStartTouchMonitor(TouchCallback callback) override;

 private:
  /// Every function with its primary and its fallback name. The hot-key functions go by their CGS names first.
  struct Functions {
    PrivateFunction<private_functions::MainConnectionID> mainConnectionID{"SLSMainConnectionID",
                                                                          "_CGSDefaultConnection"};
    PrivateFunction<private_functions::CopyManagedDisplaySpaces> copyManagedDisplaySpaces{
        "SLSCopyManagedDisplaySpaces", "CGSCopyManagedDisplaySpaces"};
    PrivateFunction<private_functions::CopyActiveMenuBarDisplayIdentifier> copyActiveMenuBarDisplayIdentifier{
        "SLSCopyActiveMenuBarDisplayIdentifier", "CGSCopyActiveMenuBarDisplayIdentifier"};
    PrivateFunction<private_functions::GetActiveSpace> getActiveSpace{"SLSGetActiveSpace", "CGSGetActiveSpace"};
    PrivateFunction<private_functions::RegisterConnectionNotifyProc> registerConnectionNotifyProc{
        "SLSRegisterConnectionNotifyProc", "CGSRegisterConnectionNotifyProc"};
    PrivateFunction<private_functions::GetSymbolicHotKeyValue> getSymbolicHotKeyValue{"CGSGetSymbolicHotKeyValue",
                                                                                      "SLSGetSymbolicHotKeyValue"};
    PrivateFunction<private_functions::IsSymbolicHotKeyEnabled> isSymbolicHotKeyEnabled{"CGSIsSymbolicHotKeyEnabled",
                                                                                        "SLSIsSymbolicHotKeyEnabled"};
    PrivateFunction<private_functions::SetSymbolicHotKeyEnabled> setSymbolicHotKeyEnabled{
        "CGSSetSymbolicHotKeyEnabled", "SLSSetSymbolicHotKeyEnabled"};
    PrivateFunction<private_functions::CopySpacesForWindows> copySpacesForWindows{"SLSCopySpacesForWindows",
                                                                                  "CGSCopySpacesForWindows"};
    PrivateFunction<private_functions::AXUIElementGetWindow> axGetWindow{"_AXUIElementGetWindow"};
  };

  [[nodiscard]] std::optional<PropertyList> managedDisplaySpaces(Functions& functions, ConnectionID connection);

  SymbolLookup lookup_;
  CoreFoundation& coreFoundation_;
  Functions functions_;
  WindowMoves moves_;

  std::atomic<ConnectionID> connection_ = 0;
  std::once_flag dockLooked_;
  private_functions::CoreDockSendNotification dockSendNotification_ = nullptr;
};

}  // namespace tallowin
