// Windows and applications that come and go: the numbers of windows, of which the server gives one id to many, and what
// is told of applications and done to open them.

#include <fstream>
#include <gmock/gmock.h>

#include "platform/x11/x11_window_numbers.h"
#include "tests/platform/x11/x11_session_fixture.h"

namespace tallowin {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Optional;

constexpr std::uint32_t resourceMask = 0x1FFFFF;
constexpr auto firstFresh = X11WindowNumbers::firstThatIsNoID;

xcb_generic_event_t destroyed(xcb_window_t window, std::uint32_t sequence) {
  xcb_generic_event_t event{};
  auto& destroy = reinterpret_cast<xcb_destroy_notify_event_t&>(event);
  destroy.response_type = XCB_DESTROY_NOTIFY;
  destroy.window = window;
  event.full_sequence = sequence;
  return event;
}

TEST(X11WindowNumbers, AreIDsUntilAnIDMayHaveBelongedToAnother) {
  X11WindowNumbers numbers(resourceMask, [](xcb_window_t) { return 1U; });
  numbers.noteManaged({0x400005, 0x400007, 0x600001});
  EXPECT_EQ(numbers.number(0x400006), std::nullopt) << "not managed";
  EXPECT_EQ(numbers.window(0x400006), 0x400006U) << "may be known from elsewhere";
  numbers.noteGone(0x400007);
  const std::pair<xcb_window_t, WindowNumber> cases[] = {
      {0x400005, 0x400005},        // is still there
      {0x400007, firstFresh},      // the same id
      {0x400006, firstFresh + 1},  // one that may have come and gone unseen
      {0x400008, 0x400008},        // a later one of that client
      {0x600002, 0x600002},        // another client
  };
  for (const auto& [window, number] : cases) {
    numbers.noteManaged({window});
    EXPECT_EQ(numbers.number(window), number) << window;
    EXPECT_EQ(numbers.window(number), window) << window;
  }
  EXPECT_EQ(numbers.window(0x400007), std::nullopt) << "the one that has gone";
}

TEST(X11WindowNumbers, EndWithTheWindowThatWasWatched) {
  std::uint32_t sequence = 0xFFFFFFF0;
  X11WindowNumbers numbers(resourceMask, [&](xcb_window_t) { return sequence; });
  numbers.noteManaged({0x400005});
  EXPECT_FALSE(numbers.handle(destroyed(0x400005, 0xFFFFFFEF))) << "said of an earlier window";
  EXPECT_FALSE(numbers.handle(destroyed(0x400004, 5)));
  auto unmapped = destroyed(0x400005, 5);
  unmapped.response_type = XCB_UNMAP_NOTIFY;
  EXPECT_FALSE(numbers.handle(unmapped));
  EXPECT_EQ(numbers.number(0x400005), 0x400005U);
  EXPECT_TRUE(numbers.handle(destroyed(0x400005, 5))) << "sequence numbers wrap around";
  EXPECT_EQ(numbers.number(0x400005), std::nullopt);

  sequence = 6;
  numbers.noteManaged({0x400005});
  xcb_generic_event_t failure{};
  auto& error = reinterpret_cast<xcb_generic_error_t&>(failure);
  error.error_code = 3;
  error.resource_id = 0x400005;
  error.full_sequence = 6;
  error.major_code = XCB_CREATE_WINDOW;
  numbers.handle(failure);
  EXPECT_EQ(numbers.number(0x400005), firstFresh) << "not about the watching";
  error.major_code = XCB_CHANGE_WINDOW_ATTRIBUTES;
  numbers.handle(failure);
  EXPECT_EQ(numbers.number(0x400005), std::nullopt) << "it had gone before it was watched";
}

class X11ReusedWindowsTest : public X11WindowsTest {
 protected:
  /// The only window's number in the list, nothing while there is none.
  std::optional<WindowNumber> listed() {
    const auto list = *windows().list(WindowScope::all);
    return list.empty() ? std::nullopt : std::optional(list.at(0).id);
  }
};

TEST_F(X11ReusedWindowsTest, TheNextClientsWindowIsAnotherOneThoughItHasTheSameID) {
  start();
  std::optional<TestClient> client(std::in_place);
  const auto window = open(*client, "First");
  EXPECT_EQ(listed(), window);

  // Nothing here looks at the list while the one goes and the other comes.
  client.reset();
  while (witness_->reply(xcb_get_geometry_reply, xcb_get_geometry(witness_->raw(), window)) != nullptr) {
  }
  client.emplace();
  ASSERT_EQ(client->open("Second", "second"), window) << "the server gives the ids of a client that ended to the next";
  ASSERT_TRUE(eventually([&] { return listed().value_or(window) != window; }));
  const auto number = *listed();
  EXPECT_GE(number, X11WindowNumbers::firstThatIsNoID);
  EXPECT_EQ(windows().window(window), std::nullopt) << "that one has gone";
  EXPECT_EQ(windows().window(number)->title, "second");
  EXPECT_FALSE(windows().minimize(ref(window)));
  EXPECT_EQ(windows().focused(getpid()), number);
  EXPECT_TRUE(windows().minimize(ref(number)));
  EXPECT_TRUE(eventually([&] { return read(window).hidden; }));
}

TEST_F(X11ReusedWindowsTest, OnlyAWindowThatTheWindowManagerLetsGoComesBackAsANewOne) {
  start();
  TestClient client;
  const auto window = open(client, "Tray");
  EXPECT_EQ(listed(), window);
  const auto root = client.root();
  xcb_delete_property(client.raw(), root, client.atom(X11Atom::netClientList));  // as a window manager that ends
  xcb_flush(client.raw());
  ASSERT_TRUE(eventually([&] { return !listed(); }));
  client.setWords(root, X11Atom::netClientList, XCB_ATOM_WINDOW, {window});  // and its successor
  ASSERT_TRUE(eventually([&] { return listed().has_value(); }));
  EXPECT_EQ(listed(), window);

  xcb_unmap_window(client.raw(), window);
  xcb_flush(client.raw());
  ASSERT_TRUE(eventually([&] { return !listed(); }));
  xcb_map_window(client.raw(), window);
  xcb_flush(client.raw());
  ASSERT_TRUE(eventually([&] { return listed().has_value(); }));
  EXPECT_THAT(listed(), Optional(X11WindowNumbers::firstThatIsNoID));
}

TEST_F(X11WindowsTest, TellsWhichApplicationsComeAndGo) {
  start();
  TestClient client;
  open(client, "Early");
  EXPECT_TRUE(eventually([&] { return !loop_.hasTimers(); }));
  std::vector<std::string> told;
  const auto observe = [&](NotificationName name, std::string_view text) {
    return session_->workspaceNotifications.addObserver(name, [&told, text](const Notification& notification) {
      told.push_back(std::string(text) + (*notification.application == getpid() ? " local" : " remote"));
    });
  };
  const auto launched = observe(NotificationName::NSWorkspaceDidLaunchApplicationNotification, "launched");
  const auto terminated = observe(NotificationName::NSWorkspaceDidTerminateApplicationNotification, "terminated");
  const auto activated = observe(NotificationName::NSWorkspaceDidActivateApplicationNotification, "activated");
  open(client, "Early");
  loop_.runReady();
  EXPECT_THAT(told, IsEmpty()) << "another window of the same";
  TestClient far;
  const auto window = far.open("Remote", "", false, "elsewhere");
  ASSERT_TRUE(loop_.runUntil([&] { return told.size() >= 2; }));
  EXPECT_THAT(told, ElementsAre("launched remote", "activated remote"));
  told.clear();
  far.close(window);
  ASSERT_TRUE(loop_.runUntil([&] { return !told.empty(); }));
  EXPECT_EQ(told.front(), "terminated remote");
}

TEST_F(X11WindowsTest, OpensWhatIsInstalled) {
  const auto folder = std::filesystem::temp_directory_path() / ("tallowin-test-" + std::to_string(getpid()));
  std::filesystem::create_directories(folder / "applications");
  const auto entry = folder / "applications/editor.desktop";
  std::ofstream(entry) << "[Desktop Entry]\nType=Application\nName=The Editor\nStartupWMClass=Editor\nExec=true %F\n";
  std::ofstream(folder / "applications/broken.desktop") << "[Desktop Entry]\nType=Application\nExec=no-such-tool\n";
  std::ofstream(folder / "applications/google-chrome.desktop") << "[Desktop Entry]\nType=Application\nExec=echo %U\n";
  setenv("XDG_DATA_HOME", folder.c_str(), 1);
  start();
  unsetenv("XDG_DATA_HOME");
  OpenConfiguration configuration;
  /// What comes of opening it, and what is launched.
  const auto openIt = [&](const std::filesystem::path& path, const std::vector<std::string>& arguments = {}) {
    processes_.launched.clear();
    configuration.arguments = arguments;
    std::string said;
    session_->workspace.openApplicationAtURL(path, configuration,
                                             [&](const auto& result) { said = result ? "opened" : result.error(); });
    EXPECT_TRUE(eventually([&] { return !said.empty(); }));
    return processes_.launched.empty() ? said : said + " by " + processes_.launched.back();
  };
  const auto find = [&](std::string_view name) {
    return session_->workspace.URLForApplicationWithBundleIdentifier(name).value_or("");
  };
  EXPECT_EQ(find("no such thing"), "");
  const std::pair<std::filesystem::path, const char*> cases[] = {
      {entry, "opened by true x"},
      {"editor", "opened by true x"},
      {"editor.desktop", "opened by true x"},
      {"/Applications/The Editor.app", "opened by true x"},
      {"the editor", "opened by true x"},
      {find("com.google.Chrome"), "opened by echo x"},
      {"ls", "opened by ls x"},
      {"/bin/ls", "opened by ls x"},
      {folder / "applications/broken.desktop", "there is no program no-such-tool"},
      {"/Applications/Gone.app", "there is no /Applications/Gone.app"},
      {"", "there is no "},
  };
  for (const auto& [application, expected] : cases) {
    EXPECT_EQ(openIt(application, {"x"}), expected) << application;
  }

  TestClient client;
  open(client, "Editor");
  EXPECT_EQ(session_->workspace.runningApplicationsWithBundleIdentifier("editor").at(0).localizedName, "The Editor");
  EXPECT_EQ(openIt(entry), "opened") << "it runs: it is made the active one";
  configuration.opensNewWindow = true;
  EXPECT_EQ(openIt(entry), "opened by true") << "its Exec again";
  std::ofstream(entry, std::ios::app) << "Actions=new-window;\n[Desktop Action new-window]\nExec=echo %c\n";
  EXPECT_EQ(openIt(entry), "opened by echo The Editor");
  configuration.createsNewApplicationInstance = true;
  EXPECT_EQ(openIt(entry), "opened by true");
  std::filesystem::remove_all(folder);
}

}  // namespace
}  // namespace tallowin
