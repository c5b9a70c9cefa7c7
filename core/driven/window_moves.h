#pragma once

#include <mutex>

#include "core/driven/private_function.h"
#include "platform/private_functions.h"

namespace tallowin {

/// The three private ways to move a window to another Space. What each needs is looked for once, at its first use.
class WindowMoves {
 public:
  WindowMoves(SymbolLookup& lookup, CoreFoundation& coreFoundation)
      : lookup_(lookup), coreFoundation_(coreFoundation) {}

  /// The window server's asynchronous bridged operation. Its outcome is not awaited: true means that it was handed
  /// over.
  bool TWMoveBridged(WindowNumber window, ManagedSpaceID space);
  bool TWMoveBridgedIsAvailable();

  /// The call that moves windows to a Space. It reports nothing: true means that it was made.
  bool TWMoveManagedSpace(ConnectionID connection, WindowNumber window, ManagedSpaceID space);
  bool TWMoveManagedSpaceIsAvailable() { return moveToManagedSpace_.get(lookup_) != nullptr; }

  /// The older way by workspaces: the Space is tagged for a moment with a workspace number and the window moved there.
  /// True when the window server reported success.
  bool TWMoveCompatID(ConnectionID connection, WindowNumber window, ManagedSpaceID space);
  bool TWMoveCompatIDIsAvailable() {
    return setCompatID_.get(lookup_) != nullptr && setWorkspace_.get(lookup_) != nullptr;
  }

 private:
  /// What the bridged operation needs of the Objective-C run time.
  struct Bridged {
    private_functions::PerformBridgedOperation perform = nullptr;
    void* objectClass = nullptr;
    void* send = nullptr;
    void* allocate = nullptr;
    void* initialise = nullptr;
    void* release = nullptr;
  };

  void findBridged();
  [[nodiscard]] private_functions::PerformBridgedOperation findEntryPoint() const;

  SymbolLookup& lookup_;
  CoreFoundation& coreFoundation_;

  std::once_flag bridgedLooked_;
  Bridged bridged_;
  PrivateFunction<private_functions::MoveWindowsToManagedSpace> moveToManagedSpace_{"SLSMoveWindowsToManagedSpace"};
  PrivateFunction<private_functions::SpaceSetCompatID> setCompatID_{"SLSSpaceSetCompatID"};
  PrivateFunction<private_functions::SetWindowListWorkspace> setWorkspace_{"SLSSetWindowListWorkspace"};
};

}  // namespace tallowin
