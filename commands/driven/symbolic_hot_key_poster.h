#pragma once

#include <set>

#include "platform/events.h"
#include "platform/log.h"
#include "platform/main_queue.h"
#include "platform/window_server.h"

namespace tallowin {

/// Presses the system's own Mission Control shortcuts. One that the user has switched off is switched on for the press,
/// and off again 1.5 s after the last press, or when this object goes. Main thread only.
class SymbolicHotKeyPoster {
 public:
  struct Services {
    WindowServer& windowServer;
    Events& events;
    MainQueue& mainQueue;
    Log& log;
  };

  explicit SymbolicHotKeyPoster(Services services) : services_(services) {}
  SymbolicHotKeyPoster(const SymbolicHotKeyPoster&) = delete;
  SymbolicHotKeyPoster& operator=(const SymbolicHotKeyPoster&) = delete;
  ~SymbolicHotKeyPoster();

  /// False when the hot key has no binding, cannot be switched on, or its events cannot be made.
  bool postSymbolicHotKey(int hotKey);

 private:
  bool enable(int hotKey);
  void scheduleHotKeyRestore();
  void restoreHotKeys();

  const Services services_;
  std::set<int> forceEnabledHotKeys_;
  WorkItem restoreWork_;
};

}  // namespace tallowin
