#pragma once

#include <memory>
#include <stdexcept>
#include <vector>

#include "platform/x11/x11_session.h"
#include "tests/platform/test_loop.h"
#include "tests/platform/x11/obedient_window_manager.h"
#include "tests/platform/x11/recording_processes.h"
#include "tests/platform/x11/test_client.h"
#include "tests/platform/x11/x_server.h"
#include "tests/set_clock.h"

namespace tallowin {

/// A session with an obedient window manager of four desktops, for contract suites.
class X11World {
 public:
  X11World() {
    if (!server_.running()) {
      throw std::runtime_error("Xvfb could not be started");
    }
    manager_ = std::make_unique<ObedientWindowManager>(4);
    session_ = *X11Session::connect(loop_, clock_, loop_, processes_, places_, 0, [] {});
  }

  X11Session& session() { return *session_; }

  /// A managed window on the desktop of this index: of a program on this machine, or on another one, which is another
  /// program then.
  WindowRef open(TestClient& client, std::uint32_t desktop, std::string_view machine = "") {
    const auto window = client.open("Editor", "a window", false, machine);
    loop_.runUntil([&] { return session_->windows().window(window).has_value(); });
    client.connection().writeMoveToDesktop(window, desktop);
    client.connection().flush();
    settle();
    return {window, session_->windows().window(window)->pid};
  }

  /// Until the window manager has done what it was asked for, what it said has been heard, and nothing is waited for.
  void settle() {
    for (int round = 0; round < 3; ++round) {
      manager_->waitUntilIdle();
      (void)session_->desktop().activeSpace();  // a round trip, which brings the events
      loop_.runReady();
      loop_.runUntil([&] { return !loop_.hasTimers(); });
    }
  }

 private:
  XServer server_;
  TestLoop loop_;
  SetClock clock_;
  RecordingProcesses processes_;
  KeptDesktopPlaces places_;
  std::unique_ptr<ObedientWindowManager> manager_;
  std::unique_ptr<X11Session> session_;
};

}  // namespace tallowin
