#pragma once

#include <xcb/randr.h>

#include "platform/displays.h"
#include "platform/x11/x11_connection.h"
#include "platform/x11/x11_glance.h"

namespace tallowin {

/// EWMH has one set of desktops for all monitors, so all monitors together are one display, number 1, which is as large
/// as the root window. Its name and what identifies the set come from the monitors that RandR knows.
class X11Displays : public Displays {
 public:
  static constexpr DisplayID mainDisplay = 1;

  X11Displays(X11Connection& connection, X11Glance& glance);

  DisplayID CGMainDisplayID() override;
  CGRect CGDisplayBounds(DisplayID display) override;
  DisplayID CGDisplayGetDisplayIDFromUUID(std::string_view uuid) override;
  /// True when one of the monitors is connected as laptop panels are.
  bool CGDisplayIsBuiltin(DisplayID display) override;
  std::vector<Screen> screens() override;
  /// One for each monitor: what its EDID says (monitorIdentity), else the name of its connector.
  std::vector<std::string> displaySetIdentifiers() override;
  /// Empty without RandR 1.5.
  std::vector<Monitor> monitors() override;

 private:
  struct Described {
    Monitor monitor;
    std::string edid;  ///< of its first output; empty when it has none
  };
  std::vector<Described> describedMonitors();

  X11Connection& connection_;
  X11Glance& glance_;
};

}  // namespace tallowin
