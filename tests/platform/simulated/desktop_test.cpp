#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/platform/simulated/story.h"

namespace tallowin {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
namespace p = private_functions;

void postKey(Events& events, VirtualKeyCode key, std::uint64_t flags) {
  for (const bool down : {true, false}) {
    const auto event = events.CGEventCreateKeyboardEvent(key, down);
    events.CGEventSetFlags(*event, flags);
    events.CGEventPost(CGEventTap::hid, *event);
  }
}

void swipeRight(Events& events) {
  for (const auto phase : {1, 2, 4}) {
    const auto event = events.CGEventCreate();
    for (const auto& [field, value] : {std::pair{55U, 30}, {110U, 23}, {123U, 1}, {132U, phase}}) {
      events.CGEventSetIntegerValueField(*event, field, value);
    }
    events.CGEventSetDoubleValueField(*event, 124, 2.5);
    events.CGEventPost(CGEventTap::session, *event);
  }
}

constexpr VirtualKeyCode digit2 = 19;

TEST(SimulatedDesktopTest, theUserSwitchesAndEverybodyIsTold) {
  Story story(R"({"script": [{"at": 1.1, "do": "switchSpace", "space": 3}]})");
  std::vector<ManagedSpaceID> told;
  const auto subscription = story.desktop.workspaceNotifications().addObserver(
      NotificationName::NSWorkspaceActiveSpaceDidChangeNotification,
      [&](const Notification&) { told.push_back(story.activeOn("Main").value_or(0)); });
  static std::vector<std::uint32_t> events;
  events.clear();
  const auto registerProc = story.function<p::RegisterConnectionNotifyProc>("SLSRegisterConnectionNotifyProc");
  const auto note = [](std::uint32_t event, void*, std::size_t, void*) { events.push_back(event); };
  EXPECT_EQ(registerProc(1, note, 1401, nullptr), 0);
  EXPECT_EQ(registerProc(1, note, 1329, nullptr), 0);
  EXPECT_NE(registerProc(0, note, 1401, nullptr), 0) << "without a connection";

  story.time.run();
  EXPECT_THAT(told, ElementsAre(3));
  EXPECT_THAT(events, ElementsAre(1401U));
  EXPECT_EQ(story.function<p::GetActiveSpace>("CGSGetActiveSpace")(1), 3U);
  EXPECT_THAT(story.lines, testing::Contains(R"({"t":1.100,"op":"script","do":"switchSpace","space":3})"));
}

TEST(SimulatedDesktopTest, aGestureSwitchesAfterItsTimeAndMayBounce) {
  Story story(R"({"dock": {"switchTime": 0.03, "bounces": {"count": 1, "after": 0.1}}})");
  swipeRight(story.desktop.events());
  story.time.advance(29ms);
  EXPECT_EQ(story.activeOn("Main"), 1);
  story.time.advance(1ms);
  EXPECT_EQ(story.activeOn("Main"), 2);
  story.time.advance(99ms);
  EXPECT_EQ(story.activeOn("Main"), 2);
  story.time.advance(1ms);
  EXPECT_EQ(story.activeOn("Main"), 1) << "it bounced";

  swipeRight(story.desktop.events());
  story.time.advance(1s);
  EXPECT_EQ(story.activeOn("Main"), 2) << "it does so once";
}

TEST(SimulatedDesktopTest, hotKeysNeverBounceAndAreTakenFromTheApplications) {
  Story story(R"({"dock": {"bounces": {"count": 5}}})");
  postKey(story.desktop.events(), digit2, CGEventFlag::control);
  story.time.advance(1s);
  EXPECT_EQ(story.activeOn("Main"), 2);
  EXPECT_THAT(story.journal("CGEventPost"), ElementsAre(R"({"tap":0,"keyCode":19,"down":true,"flags":262144})",
                                                        R"({"tap":0,"keyCode":19,"down":false,"flags":262144})"));
}

TEST(SimulatedDesktopTest, withoutPermissionEventsAreDroppedAndElementsSilent) {
  Story story(R"({"permissions": {"accessibility": false},
                  "windows": [{"number": 5, "pid": 350}],
                  "script": [{"at": 1, "do": "pressSymbolicHotKey", "hotKey": 120}]})");
  auto& accessibility = story.desktop.accessibility();
  EXPECT_FALSE(accessibility.AXIsProcessTrusted());
  const auto finder = accessibility.AXUIElementCreateApplication(350);
  EXPECT_EQ(accessibility.AXUIElementCopyAttributeValue(finder, "AXWindows"), AXValue());
  postKey(story.desktop.events(), digit2, CGEventFlag::control);
  story.time.advance(500ms);
  EXPECT_EQ(story.activeOn("Main"), 1);
  EXPECT_THAT(story.journal("CGEventPost"), testing::Each(testing::HasSubstr(R"("dropped":true)")));
  story.time.advance(1s);
  EXPECT_EQ(story.activeOn("Main"), 3) << "the user's own keyboard needs no permission";
}

TEST(SimulatedDesktopTest, newerDocksWantTheDevicesReport) {
  Story story(R"({"systemVersion": "27.0"})");
  swipeRight(story.desktop.events());
  story.time.advance(1s);
  EXPECT_EQ(story.activeOn("Main"), 1);
  EXPECT_THAT(story.journal("log"), testing::Contains(testing::HasSubstr("without a device report")));
}

TEST(SimulatedDesktopTest, theDockRestsWhileTheScreenIsLocked) {
  Story story(R"({"screenLocked": true, "script": [{"at": 2, "do": "unlockScreen"}]})");
  auto& system = story.desktop.system();
  EXPECT_EQ(system.CGSessionCopyCurrentDictionary()["CGSSessionScreenIsLocked"], true);
  swipeRight(story.desktop.events());
  postKey(story.desktop.events(), digit2, CGEventFlag::control);
  story.time.advance(2s);
  EXPECT_EQ(story.activeOn("Main"), 1);
  EXPECT_FALSE(system.CGSessionCopyCurrentDictionary().contains("CGSSessionScreenIsLocked"));
  swipeRight(story.desktop.events());
  story.time.advance(1s);
  EXPECT_EQ(story.activeOn("Main"), 2);
}

TEST(SimulatedDesktopTest, windowsMoveByEachOfThePrivatePaths) {
  Story story(R"({"windows": [{"number": 5, "pid": 350, "space": 1}]})");
  auto& foundation = story.parts.coreFoundation;
  const auto spacesOf5 = [&] {
    const auto* const windows = foundation.create({5});
    const auto* const spaces = story.function<p::CopySpacesForWindows>("SLSCopySpacesForWindows")(1, 7, windows);
    const auto list = foundation.propertyList(spaces);
    foundation.CFRelease(windows);
    foundation.CFRelease(spaces);
    return list.dump();
  };
  EXPECT_EQ(spacesOf5(), "[1]");

  const auto* const list = foundation.create({5, 99});
  story.function<p::MoveWindowsToManagedSpace>("SLSMoveWindowsToManagedSpace")(1, list, 2);
  EXPECT_EQ(spacesOf5(), "[2]");
  story.function<p::MoveWindowsToManagedSpace>("SLSMoveWindowsToManagedSpace")(1, list, 77);
  EXPECT_EQ(spacesOf5(), "[2]") << "there is no such Space";

  const std::uint32_t numbers[] = {5};
  const auto setWorkspace = story.function<p::SetWindowListWorkspace>("SLSSetWindowListWorkspace");
  const auto setCompatID = story.function<p::SpaceSetCompatID>("SLSSpaceSetCompatID");
  EXPECT_NE(setWorkspace(1, numbers, 1, 0x54574C31), 0);
  EXPECT_EQ(setCompatID(1, 3, 0x54574C31), 0);
  EXPECT_EQ(setWorkspace(1, numbers, 1, 0x54574C31), 0);
  EXPECT_EQ(setCompatID(1, 3, 0), 0);
  EXPECT_NE(setWorkspace(1, numbers, 1, 0x54574C31), 0);
  EXPECT_EQ(spacesOf5(), "[3]");

  auto* const type = story.function<p::GetClass>("objc_getClass")(SimulatedObjectiveC::operationClass.data());
  const auto selector = story.function<p::RegisterSelector>("sel_registerName");
  const auto send = story.function<p::Send>("objc_msgSend");
  auto* const operation = story.function<p::SendInitWithWindows>("objc_msgSend")(
      send(type, selector("alloc")), selector("initWithWindows:spaceID:"), list, 4);
  ASSERT_NE(operation, nullptr);
  EXPECT_EQ(story.function<void*>(p::performBridgedOperation), nullptr) << "it is not exported";
  const auto& functions = simulatedFunctions();
  const auto entry =
      std::ranges::find(functions, std::string_view(p::performBridgedOperation), &SimulatedFunction::name);
  reinterpret_cast<p::PerformBridgedOperation>(entry->address)(operation);
  send(operation, selector("release"));
  EXPECT_EQ(spacesOf5(), "[3]") << "the operation is asynchronous";
  story.time.advance(0ms);
  EXPECT_EQ(spacesOf5(), "[4]");

  foundation.CFRelease(list);
  EXPECT_EQ(foundation.liveObjects(), 0U);
  EXPECT_EQ(story.parts.objectiveC.liveObjects(), 0U);
}

TEST(SimulatedDesktopTest, missingFunctionsAreNotFound) {
  Story story(R"({"missingFunctions": ["SLSGetActiveSpace", "MTDeviceStart"]})");
  EXPECT_EQ(story.function<void*>("SLSGetActiveSpace"), nullptr);
  EXPECT_NE(story.function<void*>("CGSGetActiveSpace"), nullptr);
  auto& loader = story.desktop.loader();
  EXPECT_EQ(loader.open(p::multitouchSupport, DynamicLoader::lazy | DynamicLoader::noLoad), nullptr);
  auto* const multitouch = loader.open(p::multitouchSupport, DynamicLoader::lazy);
  EXPECT_NE(loader.symbol(multitouch, "MTDeviceCreateList"), nullptr);
  EXPECT_EQ(loader.symbol(multitouch, "MTDeviceStart"), nullptr);
  EXPECT_EQ(loader.symbol(nullptr, "MTDeviceCreateList"), nullptr) << "only in its own library";
  EXPECT_NE(loader.open(p::skyLight, DynamicLoader::lazy | DynamicLoader::noLoad), nullptr);

  Story nothing(R"({"missingFunctions": "all"})");
  EXPECT_EQ(nothing.desktop.loader().open(p::skyLight, DynamicLoader::lazy), nullptr);
  EXPECT_TRUE(nothing.desktop.loader().loadedImages().empty());
  for (const auto& function : simulatedFunctions()) {
    EXPECT_EQ(nothing.desktop.loader().symbol(nullptr, function.name), nullptr) << function.name;
  }
}

TEST(SimulatedDesktopTest, functionsServeTheDesktopThatIsStillThere) {
  auto first = std::make_unique<Story>(R"({"connection": 11})");
  auto second = std::make_unique<Story>(R"({"connection": 22})");
  const auto connection = first->function<p::MainConnectionID>("SLSMainConnectionID");
  EXPECT_EQ(connection(), 22U);
  first.reset();
  EXPECT_EQ(connection(), 22U);
  second.reset();
  EXPECT_EQ(connection(), 0U);
}

TEST(SimulatedDesktopTest, touchesReachTheCallbacksOfStartedDevices) {
  Story story(R"({"uptime": 10, "script": [{"at": 1, "do": "touch", "contacts": [[0.25, 0.5], [0.75, 1]]}]})");
  auto* const library = story.desktop.loader().open(p::multitouchSupport, DynamicLoader::lazy);
  const auto function = [&](const char* name) { return story.desktop.loader().symbol(library, name); };
  static std::vector<double> seen;
  seen.clear();
  const auto* const list = reinterpret_cast<p::DeviceCreateList>(function("MTDeviceCreateList"))();
  const auto devices = story.desktop.coreFoundation().elements(list);
  story.desktop.coreFoundation().CFRelease(list);
  ASSERT_EQ(devices.size(), 1U);
  reinterpret_cast<p::RegisterContactFrameCallback>(function("MTRegisterContactFrameCallback"))(
      devices[0], [](const void*, const void* contacts, std::int32_t count, double time, std::int32_t) {
        const auto* const y = static_cast<const char*>(contacts) + p::contactSize + p::contactPositionOffset + 4;
        float second = 0;
        std::memcpy(&second, y, sizeof second);
        seen = {static_cast<double>(count), static_cast<double>(second), time};
        return 0;
      });
  EXPECT_EQ(reinterpret_cast<p::DeviceStart>(function("MTDeviceStart"))(devices[0], 0), 0);
  story.time.run();
  EXPECT_THAT(seen, ElementsAre(2, 1, 11));
}

TEST(SimulatedDesktopTest, theWindowListAnswersItsOptions) {
  Story story(R"({"processID": 9, "permissions": {"screenRecording": false},
    "applications": [{"pid": 7, "name": "Mail", "active": true}, {"pid": 8, "name": "Notes", "hidden": true}],
    "windows": [{"number": 1, "pid": 7, "title": "Inbox", "frame": [1, 2, 3, 4], "space": 1},
                {"number": 2, "pid": 9, "title": "Own", "spaces": [1, 2]},
                {"number": 3, "pid": 7, "space": 2},
                {"number": 4, "pid": 8, "space": 1},
                {"number": 5, "pid": 7, "space": 1, "minimized": true},
                {"number": 6, "pid": 350, "space": 1, "layer": -5}]})");
  const auto numbers = [&](std::uint32_t options, WindowNumber relativeTo = 0) {
    std::string text;
    const auto list = story.desktop.windowList().CGWindowListCopyWindowInfo(options, relativeTo);
    for (const auto& window : list.value_or(PropertyList())) {
      text += std::to_string(window["kCGWindowNumber"].get<int>()) + " ";
    }
    return text;
  };
  using namespace CGWindowListOption;
  EXPECT_EQ(numbers(0), "1 2 3 4 5 6 ");
  EXPECT_EQ(numbers(onScreenOnly), "1 2 6 ");
  EXPECT_EQ(numbers(onScreenOnly | excludeDesktopElements), "1 2 ");
  EXPECT_EQ(numbers(includingWindow, 3), "3 ");
  const auto list = *story.desktop.windowList().CGWindowListCopyWindowInfo(0, 0);
  EXPECT_EQ(list[0].dump(),
            R"({"kCGWindowAlpha":1.0,"kCGWindowBounds":{"Height":4.0,"Width":3.0,"X":1.0,"Y":2.0},)"
            R"("kCGWindowLayer":0,"kCGWindowNumber":1,"kCGWindowOwnerName":"Mail","kCGWindowOwnerPID":7})");
  EXPECT_EQ(list[1]["kCGWindowName"], "Own") << "its own windows keep their names";
}

TEST(SimulatedDesktopTest, aHeldWindowIsCarriedToTheNextSpace) {
  Story story(R"({"windows": [{"number": 5, "pid": 350, "frame": [100, 100, 400, 300]}]})");
  auto& events = story.desktop.events();
  const auto post = [&](CGMouseEventType type, CGPoint location) {
    events.CGEventPost(CGEventTap::hid, *events.CGEventCreateMouseEvent(type, location));
  };
  post(CGMouseEventType::leftMouseDown, {180, 112});
  EXPECT_EQ(events.pressedMouseButtons(), 1U);
  post(CGMouseEventType::leftMouseDragged, {184, 112});
  postKey(events, digit2, CGEventFlag::control);
  story.time.advance(1s);
  post(CGMouseEventType::leftMouseUp, {184, 112});
  const auto* const window = story.parts.state.window(5);
  EXPECT_EQ(window->spaces, std::vector<ManagedSpaceID>{2});
  EXPECT_EQ(window->frame.origin, (CGPoint{104, 100}));

  postKey(events, digit2 - 1, CGEventFlag::control);
  story.time.advance(1s);
  EXPECT_EQ(window->spaces, std::vector<ManagedSpaceID>{2}) << "it was let go of";
}

TEST(SimulatedDesktopTest, displaysComeAndGo) {
  Story story(R"({"script": [
    {"at": 1, "do": "connectDisplay", "id": 2, "uuid": "AAAAAAAA-0000-0000-0000-000000000000", "bounds": [1440, 0, 800, 600]},
    {"at": 2, "do": "movePointer", "to": [1500, 10]},
    {"at": 3, "do": "disconnectDisplay", "id": 2}]})");
  int told = 0;
  const auto subscription = story.desktop.defaultNotifications().addObserver(
      NotificationName::NSApplicationDidChangeScreenParametersNotification, [&](const Notification&) { ++told; });
  auto& displays = story.desktop.displays();
  constexpr auto uuid = "aaaaaaaa-0000-0000-0000-000000000000";
  EXPECT_EQ(displays.CGDisplayGetDisplayIDFromUUID(uuid), 0U);
  story.time.advance(2s);
  EXPECT_EQ(displays.CGDisplayGetDisplayIDFromUUID(uuid), 2U);
  EXPECT_EQ(displays.CGDisplayGetDisplayIDFromUUID("Main"), 0U);
  EXPECT_EQ(displays.CGDisplayBounds(2), (CGRect{{1440, 0}, {800, 600}}));
  EXPECT_EQ(story.parts.spaces.rowUnderPointer(), 1U);
  EXPECT_EQ(story.desktop.events().mouseLocation(), (CGPoint{1500, 890}));
  story.time.advance(2s);
  EXPECT_EQ(told, 2);
  EXPECT_EQ(story.parts.spaces.rows().size(), 1U);
  EXPECT_EQ(story.parts.spaces.rows()[0].spaces.size(), 5U) << "its Space stayed";
  EXPECT_EQ(story.parts.spaces.rowUnderPointer(), std::nullopt) << "the pointer is nowhere";
}

TEST(SimulatedDesktopTest, applicationsAreOpenedActivatedAndQuit) {
  Story story(R"({"applications": [{"pid": 7, "name": "Mail", "bundleID": "org.mail", "active": true},
                                    {"name": "Notes", "bundleID": "org.notes"}],
                  "windows": [{"number": 1, "pid": 7}],
                  "script": [{"at": 1, "do": "openWindow", "number": 2, "pid": 1000},
                             {"at": 2, "do": "quitApplication", "pid": 1000}]})");
  auto& workspace = story.desktop.workspace();
  std::vector<int> launched;
  const auto subscription = story.desktop.workspaceNotifications().addObserver(
      NotificationName::NSWorkspaceDidLaunchApplicationNotification,
      [&](const Notification& notification) { launched.push_back(notification.application.value_or(0)); });
  std::vector<std::string> answers;
  const auto answer = [&](const std::expected<void, std::string>& result) {
    answers.push_back(result ? "opened" : result.error());
  };
  workspace.openApplicationAtURL(*workspace.URLForApplicationWithBundleIdentifier("org.notes"), {}, answer);
  workspace.openApplicationAtURL("/Applications/None.app", {}, answer);
  EXPECT_TRUE(answers.empty());
  story.time.advance(1s);
  EXPECT_THAT(answers, ElementsAre("opened", "The application cannot be found."));
  EXPECT_THAT(launched, ElementsAre(1000));
  EXPECT_EQ(workspace.frontmostApplication()->localizedName, "Notes");
  EXPECT_EQ(workspace.runningApplicationsWithBundleIdentifier("org.notes").size(), 1U);
  EXPECT_EQ(story.parts.state.windows.front().number, 2U);
  story.time.advance(1s);
  EXPECT_EQ(workspace.frontmostApplication()->pid, 7);
  EXPECT_EQ(story.parts.state.windows.size(), 1U);
  EXPECT_FALSE(workspace.hide(1000));
}

TEST(SimulatedDesktopTest, screensAreDrawnBackToFrontAndOnlyWithPermission) {
  Story story(R"({"displays": [{"id": 4, "uuid": "u", "bounds": [100, 50, 640, 480]}],
                  "windows": [{"number": 1, "pid": 350, "title": "front", "frame": [110, 60, 10, 10]},
                              {"number": 2, "pid": 350, "title": "back"}, {"number": 3, "pid": 350, "space": 2}],
                  "script": [{"at": 1, "do": "setPermission", "permission": "screenRecording", "allowed": false}]})");
  const auto image = story.desktop.screenCapture().captureDisplay(4);
  ASSERT_TRUE(image);
  EXPECT_EQ(image->width, 640);
  ASSERT_EQ(story.images.sketched.size(), 2U);
  EXPECT_EQ(story.images.sketched[1].label, "front");
  EXPECT_EQ(story.images.sketched[1].frame.origin, (CGPoint{10, 10}));
  EXPECT_FALSE(story.desktop.screenCapture().captureDisplay(5));
  story.time.run();
  EXPECT_FALSE(story.desktop.screenCapture().captureDisplay(4));
}

TEST(SimulatedDesktopTest, preferencesAreEditedInTheFile) {
  Story story(R"({"preferences": {"columns": 4},
                  "script": [{"at": 1, "do": "setPreference", "key": "name", "value": "x"},
                             {"at": 2, "do": "removePreference", "key": "columns"}]})");
  story.desktop.usePreferencesFile("/home/user/.config/p.json");
  const auto content = [&] {
    return PropertyList::parse(story.desktop.files().read("/home/user/.config/p.json").value_or("")).dump();
  };
  EXPECT_EQ(content(), R"({"columns":4})");
  story.time.advance(1s);
  EXPECT_EQ(content(), R"({"columns":4,"name":"x"})");
  story.time.advance(1s);
  EXPECT_EQ(content(), R"({"name":"x"})");
}

TEST(SimulatedDesktopTest, theSpacesFileIsReplacedWhenTheListChanges) {
  Story story(R"({"script": [{"at": 1, "do": "addSpace"}, {"at": 2, "do": "switchSpace", "space": 2}]})");
  int deleted = 0;
  const auto watch = story.desktop.files().watch("/home/user/Library/Preferences/com.apple.spaces.plist",
                                                 [&](FileEvents events) { deleted += events.deleted ? 1 : 0; });
  ASSERT_TRUE(watch);
  const auto before = story.desktop.files().stamp(SimulatedParts::spacesFile());
  story.time.run();
  EXPECT_EQ(deleted, 1);
  EXPECT_NE(story.desktop.files().stamp(SimulatedParts::spacesFile()), before);
}

TEST(SimulatedDesktopTest, theSameScenarioGivesTheSameJournal) {
  const auto run = [] {
    Story story(R"({"dock": {"bounces": {"count": 1}},
      "files": {"/a": "x"},
      "script": [{"at": 0.5, "do": "addSpace"}, {"at": 0.5, "do": "removeSpace", "space": 1},
                 {"at": 0.7, "do": "corruptFile", "path": "/a"}, {"at": 1, "do": "jumpClock", "by": -3600},
                 {"at": 2, "do": "quit"}]})");
    bool quit = false;
    story.desktop.onQuit = [&](int status) { quit = status == 0; };
    const auto timer = story.time.every(300ms, 0ms, [&] { swipeRight(story.desktop.events()); });
    story.time.run();
    EXPECT_TRUE(quit);
    story.journalled.record("end", {{"files", story.parts.files.contents()}});
    return story.lines;
  };
  const auto first = run();
  EXPECT_GT(first.size(), 20U);
  EXPECT_EQ(first, run());
}

TEST(JournalTest, writesTimesWithThreeDigitsAndBearsAnyText) {
  VirtualTime time;
  std::vector<std::string> lines;
  Journal journal(time, [&](std::string_view line) { lines.emplace_back(line); });
  journal.record("empty");
  time.advance(61'005'999us);
  journal.record("text", {{"b", "\xFF\n"}, {"a", 1.5}});
  EXPECT_THAT(lines, ElementsAre(R"({"t":0.000,"op":"empty"})",
                                 "{\"t\":61.005,\"op\":\"text\",\"b\":\"\uFFFD\\n\",\"a\":1.5}"));
}

}  // namespace
}  // namespace tallowin
