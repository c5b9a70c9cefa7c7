#pragma once

#include <xcb/xtest.h>

#include "platform/none/neutral.h"
#include "platform/x11/x11_connection.h"

namespace tallowin {

/// There are no accessibility elements yet; permission stands for being able to post events, for which the server must
/// have the XTEST extension.
class X11Accessibility : public NeutralAccessibility {
 public:
  explicit X11Accessibility(const X11Connection& connection) : connection_(connection) {}

  bool AXIsProcessTrusted() override { return connection_.alive() && connection_.hasExtension(xcb_test_id); }
  bool AXIsProcessTrustedWithOptions(bool /*prompt*/) override { return AXIsProcessTrusted(); }

 private:
  const X11Connection& connection_;
};

}  // namespace tallowin
