#pragma once

#include <filesystem>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "platform/x11/x11_session.h"
#include "tests/platform/test_loop.h"
#include "tests/platform/x11/obedient_window_manager.h"
#include "tests/platform/x11/test_client.h"
#include "tests/platform/x11/x_server.h"
#include "tests/set_clock.h"

namespace tallowin {

/// Takes down what would be started.
class RecordingProcesses : public Processes {
 public:
  std::expected<void, std::string> launch(const ProcessRequest& request) override {
    auto line = std::filesystem::path(request.executable).filename().string();
    for (const auto& argument : request.arguments) {
      line += ' ' + argument;
    }
    launched.push_back(line);
    return {};
  }
  std::expected<std::string, std::string> run(const ProcessRequest& /*request*/) override { return ""; }

  std::vector<std::string> launched;
};

/// A loop whose delays pass by themselves.
class RealLoop : public TestLoop, public SetClock {};

/// A server, and what a session on it needs.
template <typename Loop>
class X11Machine {
 protected:
  void connect() {
    session_ = std::make_unique<X11Session>(*X11Connection::open(), loop_, loop_, loop_, processes_, places_, 0,
                                            [this] { ++lost_; });
  }

  XServer server_;
  Loop loop_;
  RecordingProcesses processes_;
  KeptDesktopPlaces places_;
  std::unique_ptr<X11Session> session_;
  int lost_ = 0;
};

/// A session with an obedient window manager of four desktops, for contract suites.
class X11World : private X11Machine<RealLoop> {
 public:
  X11World() { connect(); }

  X11Session& session() { return *session_; }

  /// A managed window on the desktop of this index: of a program on this machine, or on another one, which is another
  /// program then.
  WindowRef open(TestClient& client, std::uint32_t desktop, std::string_view machine = "") {
    const auto window = client.open("Editor", "a window", false, machine);
    loop_.runUntil([&] { return session_->windows.window(window).has_value(); });
    client.connection().writeMoveToDesktop(window, desktop);
    client.connection().flush();
    settle();
    return {window, session_->windows.window(window)->pid};
  }

  /// Until the window manager has done what it was asked for, what it said has been heard, and nothing is waited for.
  void settle() {
    for (int round = 0; round < 3; ++round) {
      manager_.waitUntilIdle();
      (void)session_->desktop.activeSpace();  // a round trip, which brings the events
      loop_.runReady();
      loop_.runUntil([&] { return !loop_.hasTimers(); });
    }
  }

 private:
  ObedientWindowManager manager_{4};
};

}  // namespace tallowin
