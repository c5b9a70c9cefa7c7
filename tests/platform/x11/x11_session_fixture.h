#pragma once

#include <algorithm>
#include <gmock/gmock.h>
#include <iterator>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "tests/platform/x11/scripted_window_manager.h"
#include "tests/platform/x11/stepped_loop.h"
#include "tests/platform/x11/x11_world.h"

namespace tallowin {

/// A session on a real server, whose window manager is the test or in this process.
template <typename Loop>
class X11SessionTest : public testing::Test, protected X11Machine<Loop> {
 protected:
  void connect() {
    X11Machine<Loop>::connect();
    desktop().observe([this](const DesktopSign& sign) {
      EXPECT_TRUE(sign.isExact);
      told_.push_back(sign.reason);
    });
    this->loop_.runReady();
  }

  X11Desktop& desktop() { return this->session_->desktop; }
  Windows& windows() { return this->session_->windows; }

  DesktopDisplay display() { return desktop().read().value_or(DesktopReading{{{}}}).displays.at(0); }

  std::vector<ManagedSpaceID> ids() {
    std::vector<ManagedSpaceID> ids;
    std::ranges::transform(display().spaces, std::back_inserter(ids), &DesktopSpace::id);
    return ids;
  }

  /// The list in short: "1 [2] 3", or "none".
  std::string spaces() {
    std::string text;
    for (const auto id : ids()) {
      const auto number = std::to_string(id);
      text += (text.empty() ? "" : " ") + (display().current == id ? "[" + number + "]" : number);
    }
    return text.empty() ? "none" : text;
  }

  /// What becomes of a request: "done", "unable", "noSpace", "ignored"; "waiting" meanwhile.
  AskedDesktop::Completion intoOutcome() {
    outcome_ = "waiting";
    return [this](const std::expected<void, DesktopRefusal>& result) {
      const char* const names[] = {"unable", "noSpace", "ignored"};
      outcome_ = result ? "done" : names[static_cast<int>(result.error())];
    };
  }

  std::vector<std::string> told_;
  std::string outcome_;
};

/// With a window manager that the test plays, and delays that pass when the test says so.
class X11DesktopTest : public X11SessionTest<SteppedLoop> {
 protected:
  void post(VirtualKeyCode keyCode, std::uint64_t flags, bool down) {
    auto event = session_->events.CGEventCreateKeyboardEvent(keyCode, down);
    session_->events.CGEventSetFlags(*event, flags);
    session_->events.CGEventPost(CGEventTap::hid, *event);
  }

  /// What the window manager was asked for so far.
  std::vector<std::string> requests(ScriptedWindowManager& manager) {
    (void)desktop().activeSpace();  // a round trip: the server has passed the requests on
    return manager.takeRequests();
  }

  bool runUntilTold(std::size_t count) {
    return loop_.runUntil([&] { return told_.size() >= count; });
  }
};

/// With windows of clients in this process under a window manager that does what it is asked for.
class X11WindowsTest : public X11SessionTest<RealLoop> {
 protected:
  void start(std::uint32_t desktops = 4, std::set<X11Atom> ignored = {}, int depth = 1,
             std::string_view name = "Openbox") {
    manager_.emplace(desktops, std::move(ignored), depth, name);
    witness_ = *X11Connection::open();
    witnessDesktops_.emplace(*witness_, witnessPlaces_);
    reader_.emplace(*witness_, *witnessDesktops_, 0);
    connect();
  }

  /// A managed window of a client.
  xcb_window_t open(TestClient& client, std::string_view className, std::string_view title = "",
                    std::string_view machine = "") {
    const auto window = client.open(className, title, false, machine);
    EXPECT_TRUE(eventually([&] { return windows().window(window).has_value(); }));
    loop_.runReady();
    return window;
  }

  bool eventually(const std::function<bool()>& condition) { return loop_.runUntil(condition); }

  /// The window as another client sees it.
  X11Window read(xcb_window_t window) { return reader_->read(window).value_or(X11Window{}); }

  void moveToDesktop(xcb_window_t window, std::uint32_t desktop) {
    witness_->writeMoveToDesktop(window, desktop);
    witness_->flush();
    EXPECT_TRUE(eventually([&] { return read(window).desktop == desktop; }));
  }

  static WindowRef ref(WindowNumber window) { return {window, getpid()}; }

  std::vector<WindowNumber> order() {
    std::vector<WindowNumber> numbers;
    for (const auto& window : reader_->read().windows) {
      numbers.push_back(window.id);
    }
    return numbers;
  }

  std::optional<ObedientWindowManager> manager_;
  std::unique_ptr<X11Connection> witness_;
  KeptDesktopPlaces witnessPlaces_;
  std::optional<X11DesktopReader> witnessDesktops_;
  std::optional<X11WindowReader> reader_;
};

}  // namespace tallowin
