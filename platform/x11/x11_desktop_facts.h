#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>
#include <xcb/xcb.h>

#include "platform/desktop.h"
#include "platform/processes.h"
#include "platform/x11/x11_desktop_reader.h"
#include "platform/x11/x11_window_reader.h"

namespace tallowin {

/// What the window manager says of itself, and what its program says when it is asked for its version. Main thread
/// only.
class X11DesktopFacts : public DesktopFacts {
 public:
  X11DesktopFacts(X11Connection& connection, X11DesktopReader& desktops, X11WindowReader& windows, Processes& processes)
      : connection_(connection), desktops_(desktops), windows_(windows), processes_(processes) {}

  std::optional<WindowManagerFacts> windowManager() override;
  std::vector<SetUpCheck> checks() override;

 private:
  [[nodiscard]] std::string versionOf(ProcessID pid);
  [[nodiscard]] std::vector<std::string> missingHints();

  X11Connection& connection_;
  X11DesktopReader& desktops_;
  X11WindowReader& windows_;
  Processes& processes_;
};

/// The first word that is a number with a dot, as programs print their version ("Openbox 3.6.1", "i3 version 4.22
/// (2023-01-02)"). Empty when there is none.
[[nodiscard]] std::string versionIn(std::string text);

/// The argument that makes this window manager print its version and end. Empty for others, which are not to be asked:
/// they might take it for a reason to start.
[[nodiscard]] std::string_view versionArgument(std::string_view program);

}  // namespace tallowin
