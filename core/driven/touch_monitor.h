#pragma once

#include "core/driven/symbol_lookup.h"
#include "platform/core_foundation.h"
#include "platform/window_server.h"

namespace tallowin {

/// Receives the frames of all multitouch devices through the multitouch framework.
class TouchMonitor {
 public:
  TouchMonitor(SymbolLookup& lookup, CoreFoundation& coreFoundation)
      : lookup_(lookup), coreFoundation_(coreFoundation) {}
  TouchMonitor(const TouchMonitor&) = delete;
  TouchMonitor& operator=(const TouchMonitor&) = delete;
  ~TouchMonitor();

  /// As WindowServer::CGSBridgeStartTouchMonitor. Starting again registers on every device again.
  bool start(TouchCallback callback);

 private:
  SymbolLookup& lookup_;
  CoreFoundation& coreFoundation_;
};

}  // namespace tallowin
