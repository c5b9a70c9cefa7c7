#pragma once

#include <filesystem>
#include <gmock/gmock.h>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "platform/x11/x11_accessibility.h"
#include "platform/x11/x11_application_changes.h"
#include "platform/x11/x11_desktop_operations.h"
#include "platform/x11/x11_event_pump.h"
#include "platform/x11/x11_window_list.h"
#include "platform/x11/x11_windows.h"
#include "platform/x11/x11_workspace.h"
#include "tests/platform/test_loop.h"
#include "tests/platform/x11/obedient_window_manager.h"
#include "tests/platform/x11/test_client.h"
#include "tests/platform/x11/x_server.h"

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

/// The services about windows on a real server, with windows of clients in this process.
class X11WindowsTest : public XServerTest {
 protected:
  void start(std::uint32_t desktops = 4, std::set<X11Atom> ignored = {}, int depth = 1,
             std::string_view name = "Openbox") {
    manager_.emplace(desktops, std::move(ignored), depth, name);
    connection_ = *X11Connection::open();
    desktops_.emplace(*connection_, places_);
    windows_.emplace(*connection_, *desktops_, processes_, loop_, 0);
    operations_.emplace(*connection_, *desktops_, places_, *windows_, loop_);
    missionControl_.emplace(*operations_, loop_, [](const std::string&) { return CGRect{}; });
    accessibility_.emplace(*connection_, *missionControl_, windows_->context);
    workspace_.emplace(loop_, windows_->launcher, windows_->context);
    list_.emplace(*connection_, windows_->reader, windows_->applications);
  }

  /// Starts, and hears from then on what becomes of windows and applications.
  void startListening() {
    start();
    const std::uint32_t mask = XCB_EVENT_MASK_PROPERTY_CHANGE;
    xcb_change_window_attributes(connection_->raw(), connection_->root(), XCB_CW_EVENT_MASK, &mask);
    changes_.emplace(*connection_, windows_->reader, windows_->applications, loop_, center_);
    pump_.emplace(
        *connection_, loop_, loop_, [this](const xcb_generic_event_t& event) { changes_->handle(event); }, [] {});
  }

  /// A managed window of a client.
  xcb_window_t open(TestClient& client, std::string_view className, std::string_view title = "",
                    std::string_view machine = "") {
    const auto window = client.open(className, title, false, machine);
    EXPECT_TRUE(eventually([&] { return windows_->reader.read(window).has_value(); }));
    windows_->applications.invalidate();
    return window;
  }

  bool eventually(const std::function<bool()>& condition) { return waitUntil(condition, std::chrono::minutes(1)); }

  X11Window read(xcb_window_t window) { return windows_->reader.read(window).value_or(X11Window{}); }

  std::vector<WindowNumber> order() {
    std::vector<WindowNumber> numbers;
    for (const auto& window : windows_->reader.read().windows) {
      numbers.push_back(window.id);
    }
    return numbers;
  }

  AXUIElement element(xcb_window_t window) { return std::make_shared<X11WindowElement>(windows_->context, window); }

  bool set(xcb_window_t window, std::string_view attribute, const AXValue& value) {
    return accessibility_->AXUIElementSetAttributeValue(element(window), attribute, value);
  }

  AXValue get(xcb_window_t window, std::string_view attribute) {
    return accessibility_->AXUIElementCopyAttributeValue(element(window), attribute);
  }

  TestLoop loop_;
  RecordingProcesses processes_;
  std::optional<ObedientWindowManager> manager_;
  std::unique_ptr<X11Connection> connection_;
  KeptDesktopPlaces places_;
  std::optional<X11DesktopReader> desktops_;
  std::optional<X11Windows> windows_;
  std::optional<X11DesktopOperations> operations_;
  std::optional<MissionControl> missionControl_;
  std::optional<X11Accessibility> accessibility_;
  std::optional<X11Workspace> workspace_;
  std::optional<X11WindowList> list_;
  BroadcastNotificationCenter center_;
  std::optional<X11ApplicationChanges> changes_;
  std::optional<X11EventPump> pump_;
};

}  // namespace tallowin
