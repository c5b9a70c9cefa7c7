#pragma once

#include <gmock/gmock.h>
#include <memory>
#include <string>
#include <vector>

#include "platform/x11/x11_desktop.h"
#include "tests/lines_log.h"
#include "tests/platform/x11/scripted_window_manager.h"
#include "tests/platform/x11/stepped_loop.h"
#include "tests/platform/x11/x_server.h"

namespace tallowin {

/// Processes that are never started.
class NoProcesses : public Processes {
 public:
  std::expected<void, std::string> launch(const ProcessRequest& /*request*/) override { return {}; }
  std::expected<std::string, std::string> run(const ProcessRequest& /*request*/) override { return {}; }
};

/// A desktop on a real server, whose window manager is the test. Its delays pass when the test says so.
class X11DesktopTest : public XServerTest {
 protected:
  auto tryToConnect() {
    return X11Desktop::connect(loop_, loop_, log_, loop_, processes_, places_, [this] { ++lost_; });
  }

  void connect() {
    auto connected = tryToConnect();
    ASSERT_TRUE(connected) << connected.error();
    desktop_ = std::move(*connected);
    desktop_->windowServer().CGSBridgeRegisterSpaceNotifications(
        [this](WindowServerEvent event) { told_.push_back(event); });
    loop_.runReady();
  }

  WindowServer& windowServer() { return desktop_->windowServer(); }

  /// The list in short: "1 [2] 3", or "none".
  std::string spaces() {
    const auto list = windowServer().CGSBridgeCopyManagedDisplaySpaces();
    if (!list) {
      return "none";
    }
    const auto& display = list->at(0);
    const auto current = display.value(PropertyList::json_pointer("/Current Space/ManagedSpaceID"), ManagedSpaceID{-1});
    std::string text;
    for (const auto& space : display["Spaces"]) {
      text.append(text.empty() ? "" : " ").append(space["ManagedSpaceID"] == current ? "[" : "");
      text.append(space["ManagedSpaceID"].dump()).append(space["ManagedSpaceID"] == current ? "]" : "");
    }
    return text;
  }

  void post(VirtualKeyCode keyCode, std::uint64_t flags, bool down) {
    auto event = desktop_->events().CGEventCreateKeyboardEvent(keyCode, down);
    desktop_->events().CGEventSetFlags(*event, flags);
    desktop_->events().CGEventPost(CGEventTap::hid, *event);
  }

  /// What the window manager was asked for so far.
  std::vector<std::string> requests(ScriptedWindowManager& manager) {
    windowServer().CGSBridgeActiveSpace();  // a round trip: the server has passed the requests on
    return manager.takeRequests();
  }

  bool runUntilTold(std::size_t count) {
    return loop_.runUntil([&] { return told_.size() >= count; });
  }

  SteppedLoop loop_;
  LinesLog log_;
  NoProcesses processes_;
  KeptDesktopPlaces places_;
  std::unique_ptr<X11Desktop> desktop_;
  std::vector<WindowServerEvent> told_;
  int lost_ = 0;
};

}  // namespace tallowin
