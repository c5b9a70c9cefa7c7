// The window server through functions found by name: which names, how often, and what happens without them.

#include "core/cgs_bridge.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <map>

#include "platform/none/no_core_foundation.h"
#include "tests/simulated_program.h"

namespace tallowin {
namespace {

using testing::ElementsAre;

/// Remembers what it is asked for, and finds what it is told to.
class RecordingLoader : public DynamicLoader {
 public:
  LibraryHandle open(std::string_view path, int mode) override {
    asked.push_back("open " + std::string(path.substr(path.rfind('/') + 1)) + " " + std::to_string(mode));
    return opens && mode == openMode ? this : nullptr;
  }
  void* symbol(LibraryHandle library, std::string_view name) override {
    asked.push_back(std::string(library != nullptr ? "framework " : "default ") + std::string(name));
    const auto found = symbols.find(name);
    return found != symbols.end() ? found->second : nullptr;
  }
  std::vector<LoadedImage> loadedImages() override { return {}; }

  std::vector<std::string> take() { return std::exchange(asked, {}); }

  bool opens = true;
  int openMode = 17;
  std::map<std::string, void*, std::less<>> symbols;
  std::vector<std::string> asked;
};

TEST(CGSBridgeLookup, NamesAreTriedInTheFrameworkThenInTheDefaultNamespaceAndOnlyOnce) {
  RecordingLoader loader;
  NoCoreFoundation coreFoundation;
  CGSBridge bridge(loader, coreFoundation);
  EXPECT_EQ(bridge.CGSBridgeConnection(), 0U);
  EXPECT_THAT(loader.take(),
              ElementsAre("open SkyLight 17", "framework SLSMainConnectionID", "framework _CGSDefaultConnection",
                          "default SLSMainConnectionID", "default _CGSDefaultConnection"));
  EXPECT_EQ(bridge.CGSBridgeConnection(), 0U);
  EXPECT_THAT(loader.take(), ElementsAre());

  EXPECT_FALSE(bridge.CGSBridgeIsSymbolicHotKeyEnabled(79));
  EXPECT_THAT(loader.take(), ElementsAre("framework CGSIsSymbolicHotKeyEnabled", "framework SLSIsSymbolicHotKeyEnabled",
                                         "default CGSIsSymbolicHotKeyEnabled", "default SLSIsSymbolicHotKeyEnabled"))
      << "the hot-key functions go by their CGS names first";
}

TEST(CGSBridgeLookup, TheFrameworkIsOpenedLazilyWhenItIsNotLoadedYet) {
  RecordingLoader loader;
  NoCoreFoundation coreFoundation;
  loader.openMode = 1;
  EXPECT_EQ(CGSBridge(loader, coreFoundation).CGSBridgeActiveSpace(), 0U);
  EXPECT_THAT(loader.take(), testing::IsSupersetOf({"open SkyLight 17", "open SkyLight 1"}));
  loader.opens = false;
  EXPECT_EQ(CGSBridge(loader, coreFoundation).CGSBridgeProbe().bits(), 0U);
  EXPECT_THAT(loader.take(), testing::Not(testing::Contains(testing::StartsWith("framework"))));
}

TEST(CGSBridgeLookup, TheProbeLooksAfreshAndLeavesTheRestAsItWas) {
  RecordingLoader loader;
  NoCoreFoundation coreFoundation;
  CGSBridge bridge(loader, coreFoundation);
  EXPECT_EQ(bridge.CGSBridgeActiveSpace(), 0U);
  const auto connection = +[]() -> ConnectionID { return 7; };
  const auto space = +[](ConnectionID) -> std::uint64_t { return 5; };
  loader.symbols["_CGSDefaultConnection"] = reinterpret_cast<void*>(connection);
  loader.symbols["SLSGetActiveSpace"] = reinterpret_cast<void*>(space);
  EXPECT_EQ(bridge.CGSBridgeProbe().bits(), CGSBridgeHealth::connection | CGSBridgeHealth::activeSpace);
  EXPECT_EQ(bridge.CGSBridgeActiveSpace(), 0U) << "what was missing stays missing";
  EXPECT_EQ(CGSBridge(loader, coreFoundation).CGSBridgeActiveSpace(), 5U);
}

TEST(CGSBridge, IsNeutralWithoutAnyFunction) {
  SimulatedProgram program(R"({"missingFunctions": "all"})");
  auto& bridge = program.bridge;
  EXPECT_EQ(bridge.CGSBridgeProbe().bits(), 0U);
  EXPECT_EQ(bridge.CGSBridgeConnection(), 0U);
  EXPECT_EQ(bridge.CGSBridgeCopyManagedDisplaySpaces(), std::nullopt);
  EXPECT_EQ(bridge.CGSBridgeCopyActiveMenuBarDisplayIdentifier(), std::nullopt);
  EXPECT_FALSE(bridge.CGSBridgeRegisterSpaceNotifications([](WindowServerEvent) {}));
  EXPECT_EQ(bridge.CGSBridgeGetSymbolicHotKey(79), std::nullopt);
  EXPECT_FALSE(bridge.CGSBridgeSetSymbolicHotKeyEnabled(79, true));
  EXPECT_EQ(bridge.CGSBridgeCopySpacesForWindow(1), std::nullopt);
  EXPECT_EQ(bridge.CGSBridgeAXWindowID(std::make_shared<AXElementHandle>()), std::nullopt);
  EXPECT_FALSE(bridge.CGSBridgeMoveWindowToSpace(1, 2));
  EXPECT_FALSE(bridge.CGSBridgeDockNotify("com.apple.expose.awake"));
  EXPECT_FALSE(bridge.CGSBridgeStartTouchMonitor([](const TouchFrame&) {}));
  EXPECT_EQ(program.provider.snapshot(), std::nullopt);
  EXPECT_THAT(program.takeLog(), ElementsAre("CGSCopyManagedDisplaySpaces returned nothing"));
}

TEST(CGSBridge, HealthTellsWhatIsMissing) {
  const std::pair<const char*, std::uint32_t> cases[] = {
      {R"({})", 127},
      {R"({"managedDisplaySpaces": []})", 63},
      {R"({"managedDisplaySpaces": null})", 63},
      {R"({"managedDisplaySpaces": {"a": 1}})", 63},
      {R"({"connection": 0})", 62},
      {R"({"missingFunctions": ["SLSCopyManagedDisplaySpaces"]})", 127},
      {R"({"missingFunctions": ["SLSCopyManagedDisplaySpaces", "CGSCopyManagedDisplaySpaces"]})", 61},
      {R"({"missingFunctions": ["CGSSetSymbolicHotKeyEnabled", "SLSSetSymbolicHotKeyEnabled"]})", 95},
      {R"({"missingFunctions": ["SLSRegisterConnectionNotifyProc", "CGSRegisterConnectionNotifyProc"]})", 111},
  };
  for (const auto& [scenario, bits] : cases) {
    SimulatedProgram program(scenario);
    EXPECT_EQ(program.bridge.CGSBridgeProbe().bits(), bits) << scenario;
    EXPECT_EQ(program.bridge.CGSBridgeProbe().healthy(), (bits & 67U) == 67U) << scenario;
  }
}

TEST(CGSBridge, ALaterReceiverOfNotificationsReplacesTheFormerOne) {
  SimulatedProgram program(R"({"notificationFailures": [818],
                               "script": [{"at": 1, "do": "switchSpace", "space": 2}]})");
  std::vector<std::string> told;
  const auto receiver = [&told](const char* name) {
    return [&told, name](WindowServerEvent event) { told.push_back(name + std::to_string(event)); };
  };
  EXPECT_FALSE(program.bridge.CGSBridgeRegisterSpaceNotifications(receiver("first ")));
  const auto registered = program.take("SLSRegisterConnectionNotifyProc");
  std::vector<int> events;
  for (const auto& record : registered) {
    events.push_back(record.at("event"));
  }
  EXPECT_THAT(events, ElementsAre(1329, 1401, 818, 828, 1322)) << "all five are tried, whatever fails";
  EXPECT_FALSE(program.bridge.CGSBridgeRegisterSpaceNotifications(receiver("second ")));
  program.time.advance(std::chrono::seconds(2));
  EXPECT_THAT(told, testing::Each("second 1401"));
  EXPECT_FALSE(told.empty()) << "a registration that fails in part still keeps its receiver";
}

TEST(CGSBridge, WindowsMoveByTheFirstWayThatThereIs) {
  constexpr auto window =
      R"("windows": [{"number": 7, "pid": 100, "space": 1}], "applications": [{"pid": 100, "name": "Mail"}])";
  struct Case {
    const char* settings;
    const char* way;
    bool moved;
  };
  const Case cases[] = {
      {"", "SLSBridgedMoveWindowsToManagedSpaceOperation", true},
      {R"(, "connection": 0)", "SLSBridgedMoveWindowsToManagedSpaceOperation", true},
      {R"(, "missingFunctions": ["objc_getClass"])", "SLSMoveWindowsToManagedSpace", true},
      {R"(, "missingFunctions": ["objc_getClass", "SLSMoveWindowsToManagedSpace"])", "SLSSetWindowListWorkspace", true},
      {R"(, "missingFunctions": ["objc_getClass"], "connection": 0)", "SLSMoveWindowsToManagedSpace", false},
      {R"(, "missingFunctions": ["objc_msgSend", "SLSMoveWindowsToManagedSpace", "SLSSpaceSetCompatID"])",
       "SLSSetWindowListWorkspace", false},
  };
  for (const auto& [settings, way, moved] : cases) {
    SimulatedProgram program("{" + std::string(window) + settings + "}");
    EXPECT_EQ(program.bridge.CGSBridgeMoveWindowToSpace(7, 3), moved) << settings;
    program.time.advance(std::chrono::seconds(1));
    EXPECT_EQ(program.take(way).size(), moved ? 1U : 0U) << settings;
    const auto expected = std::vector<ManagedSpaceID>{moved ? 3 : 1};
    EXPECT_EQ(program.state().windows.at(0).spaces, expected) << settings;
    if (program.bridge.CGSBridgeConnection() != 0) {
      EXPECT_EQ(program.bridge.CGSBridgeCopySpacesForWindow(7), expected) << settings;
    }
  }
  for (const auto* settings : {cases[0].settings, cases[3].settings}) {
    SimulatedProgram program("{" + std::string(window) + settings + "}");
    program.bridge.CGSBridgeMoveWindowToSpace(7, 99);
    program.time.advance(std::chrono::seconds(1));
    EXPECT_THAT(program.spacesOf(7), ElementsAre(1)) << "there is no such Space";
  }
}

TEST(CGSBridge, TouchFramesCarryTheMeanOfTheirContacts) {
  SimulatedProgram program(R"({"script": [
    {"at": 1, "do": "touch", "contacts": [[0.25, 0.5], [0.75, 1.0]]}, {"at": 2, "do": "touch", "contacts": []}]})");
  std::vector<TouchFrame> frames;
  EXPECT_TRUE(program.bridge.CGSBridgeStartTouchMonitor([&](const TouchFrame& frame) { frames.push_back(frame); }));
  program.time.advance(std::chrono::seconds(3));
  ASSERT_EQ(frames.size(), 2U);
  EXPECT_EQ(frames[0].contactCount, 2);
  EXPECT_FLOAT_EQ(frames[0].meanX, 0.5F);
  EXPECT_FLOAT_EQ(frames[0].meanY, 0.75F);
  EXPECT_EQ((TouchFrame{frames[1].contactCount, frames[1].meanX, frames[1].meanY, 0}), (TouchFrame{0, 0, 0, 0}));
}

}  // namespace
}  // namespace tallowin
