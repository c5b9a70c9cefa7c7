#include <fstream>
#include <gmock/gmock.h>

#include "platform/x11/x11_application_changes.h"
#include "platform/x11/x11_event_pump.h"
#include "tests/platform/x11/x11_windows_fixture.h"

namespace tallowin {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

using X11ApplicationsTest = X11WindowsTest;

TEST_F(X11ApplicationsTest, TellsWhichApplicationsComeAndGo) {
  start();
  TestClient client;
  open(client, "Early");
  BroadcastNotificationCenter center;
  std::vector<std::string> told;
  const auto observe = [&](NotificationName name, std::string_view text) {
    return center.addObserver(name, [&told, text](const Notification& notification) {
      told.push_back(std::string(text) + (*notification.application == getpid() ? " local" : " remote"));
    });
  };
  const auto launched = observe(NotificationName::NSWorkspaceDidLaunchApplicationNotification, "launched");
  const auto terminated = observe(NotificationName::NSWorkspaceDidTerminateApplicationNotification, "terminated");
  const auto activated = observe(NotificationName::NSWorkspaceDidActivateApplicationNotification, "activated");
  const std::uint32_t mask = XCB_EVENT_MASK_PROPERTY_CHANGE;
  xcb_change_window_attributes(connection_->raw(), connection_->root(), XCB_CW_EVENT_MASK, &mask);
  X11ApplicationChanges changes(*connection_, windows_->reader, windows_->applications, loop_, center);
  X11EventPump pump(
      *connection_, loop_, loop_, [&](const xcb_generic_event_t& event) { changes.handle(event); }, [] {});
  loop_.runReady();
  EXPECT_THAT(told, IsEmpty()) << "what runs at the start did not come";

  open(client, "Early");
  loop_.runReady();
  EXPECT_THAT(told, IsEmpty()) << "another window of the same";
  TestClient far;
  const auto window = xcb_generate_id(far.raw());
  xcb_create_window(far.raw(), XCB_COPY_FROM_PARENT, window, connection_->root(), 0, 0, 9, 9, 0,
                    XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, 0, nullptr);
  far.setText(window, XCB_ATOM_WM_CLIENT_MACHINE, XCB_ATOM_STRING, "elsewhere");
  xcb_map_window(far.raw(), window);
  xcb_flush(far.raw());
  ASSERT_TRUE(loop_.runUntil([&] { return told.size() >= 2; }));
  EXPECT_THAT(told, ElementsAre("launched remote", "activated remote"));
  told.clear();
  far.close(window);
  ASSERT_TRUE(loop_.runUntil([&] { return !told.empty(); }));
  EXPECT_EQ(told.front(), "terminated remote");
}

TEST_F(X11ApplicationsTest, OpensWhatIsInstalled) {
  const auto folder = std::filesystem::temp_directory_path() / ("tallowin-test-" + std::to_string(getpid()));
  std::filesystem::create_directories(folder / "applications");
  const auto entry = folder / "applications/editor.desktop";
  std::ofstream(entry) << "[Desktop Entry]\nType=Application\nName=The Editor\nStartupWMClass=Editor\nExec=true %F\n";
  std::ofstream(folder / "applications/broken.desktop") << "[Desktop Entry]\nType=Application\nExec=no-such-tool\n";
  std::ofstream(folder / "applications/google-chrome.desktop") << "[Desktop Entry]\nType=Application\nExec=echo %U\n";
  setenv("XDG_DATA_HOME", folder.c_str(), 1);
  start();
  unsetenv("XDG_DATA_HOME");
  std::vector<std::string> results;
  const auto openIt = [&](const std::filesystem::path& path, const OpenConfiguration& configuration) {
    workspace_->openApplicationAtURL(
        path, configuration, [&](const auto& result) { results.push_back(result ? "opened" : result.error()); });
    EXPECT_TRUE(loop_.runUntil([&] { return !results.empty(); }));
    return std::exchange(results, {}).front();
  };
  EXPECT_EQ(workspace_->URLForApplicationWithBundleIdentifier("editor"), entry);
  EXPECT_EQ(workspace_->URLForApplicationWithBundleIdentifier("no such thing"), std::nullopt);
  OpenConfiguration configuration;
  EXPECT_EQ(openIt(entry, configuration), "opened");
  EXPECT_EQ(openIt(folder / "applications/broken.desktop", configuration), "there is no program no-such-tool");
  EXPECT_EQ(openIt(folder / "nothing", configuration), "there is no " + (folder / "nothing").string());
  configuration.arguments = {"a", "b"};
  EXPECT_EQ(openIt("/bin/ls", configuration), "opened");
  EXPECT_THAT(processes_.launched, ElementsAre("true", "ls a b"));

  processes_.launched.clear();
  const auto chrome = workspace_->URLForApplicationWithBundleIdentifier("com.google.Chrome");
  ASSERT_EQ(chrome, folder / "applications/google-chrome.desktop");
  configuration.arguments = {"--profile-directory=Profile 1"};
  EXPECT_EQ(openIt(*chrome, configuration), "opened");
  configuration.arguments = {"x"};
  for (const auto* application : {"editor", "editor.desktop", "/Applications/The Editor.app", "the editor", "ls"}) {
    EXPECT_EQ(openIt(application, configuration), "opened") << application;
  }
  EXPECT_EQ(openIt("/Applications/Gone.app", configuration), "there is no /Applications/Gone.app");
  EXPECT_EQ(openIt("", configuration), "there is no ");
  EXPECT_THAT(processes_.launched,
              ElementsAre("echo --profile-directory=Profile 1", "true x", "true x", "true x", "true x", "ls x"));
  processes_.launched = {"true", "ls a b"};

  TestClient client;
  open(client, "Editor");
  EXPECT_EQ(workspace_->runningApplicationsWithBundleIdentifier("editor").at(0).localizedName, "The Editor");
  configuration.arguments.clear();
  EXPECT_EQ(openIt(entry, configuration), "opened");
  EXPECT_EQ(processes_.launched.size(), 2U) << "it runs: it is made the active one";
  configuration.createsNewApplicationInstance = true;
  EXPECT_EQ(openIt(entry, configuration), "opened");
  EXPECT_EQ(processes_.launched.size(), 3U);
  std::filesystem::remove_all(folder);
}

}  // namespace
}  // namespace tallowin
