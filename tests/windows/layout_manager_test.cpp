// Saving window layouts and putting windows back, on a simulated desktop.

#include "windows/layout_manager.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "base/json_text.h"
#include "tests/windows/windows_program.h"
#include "windows/layout_commands.h"

namespace tallowin {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

constexpr auto display = "Main";

/// Desktops 1 to 6 on one display, and windows 101 and so on, of three applications in turn, on the desktops in turn.
std::string desktopWithWindows(int windows) {
  auto list = PropertyList::parse(R"([{"Display Identifier": "Main", "Current Space": {"ManagedSpaceID": 1}}])");
  for (int i = 1; i <= 6; ++i) {
    list[0]["Spaces"].push_back({{"ManagedSpaceID", i}});
  }
  PropertyList scenario = {
      {"managedDisplaySpaces", list},
      {"applications",
       {{{"name", "A"}, {"pid", 11}, {"bundleID", "app.a"}},
        {{"name", "B"}, {"pid", 12}, {"bundleID", "app.b"}},
        {{"name", "C"}, {"pid", 13}, {"bundleID", "app.c"}}}},
  };
  for (int i = 0; i < windows; ++i) {
    scenario["windows"].push_back({{"number", 101 + i},
                                   {"pid", 11 + i % 3},
                                   {"title", "Window " + std::to_string(i)},
                                   {"frame", {i, 30, 500, 400}},
                                   {"space", 1 + i % 6}});
  }
  return scenario.dump();
}

/// A program with the user's commands.
struct LayoutProgram : WindowsProgram {
  using WindowsProgram::WindowsProgram;

  void moveByHand(WindowNumber window, ManagedSpaceID space) { state().window(window)->spaces = {space}; }

  LayoutCommands commands{*layouts, desktop.toasts()};
};

std::string layoutFile(std::string_view name) {
  return layoutFolder + std::string(name) + "--" + display + ".json";
}

TEST(LayoutManager, WhatVanishesMeanwhileCostsOnlyItself) {
  LayoutProgram program(desktopWithWindows(6));
  auto layout = program.layouts->save("manual", program.snapshot());
  for (const WindowNumber window : {101U, 102U, 103U}) {
    program.moveByHand(window, 6);
  }
  layout.entries.at(2).spaceUUID = "a Space that was removed";
  program.state().window(103)->frame.origin = {7, 7};
  program.readWindows();
  std::vector<std::size_t> counts;
  program.layouts->restore(layout, program.snapshot(), [&](std::size_t moved) { counts.push_back(moved); });
  program.time.advance(60ms);
  std::erase_if(program.state().windows, [](const SimulatedWindow& window) { return window.number == 101; });
  program.time.advance(1s);
  EXPECT_THAT(counts, ElementsAre(1U));
  EXPECT_THAT(program.spacesOf(102), ElementsAre(2));
  EXPECT_THAT(program.spacesOf(103), ElementsAre(6)) << "its Space is gone: not moved";
  EXPECT_EQ(program.state().window(103)->frame.origin, (CGPoint{7, 7})) << "nor resized";
}

TEST(LayoutManager, CompletesOnceAndNeverInsideTheCall) {
  LayoutProgram program(desktopWithWindows(3));
  const auto layout = program.layouts->capture("manual", program.snapshot());
  auto fullscreen = program.snapshot();
  for (auto& space : fullscreen.displays.at(0).spaces) {
    space.isFullscreen = true;
  }
  for (const auto& window : program.state().windows) {
    program.moveByHand(window.number, 6);
  }
  program.readWindows();
  std::vector<std::string> told;
  program.layouts->restore({}, program.snapshot(),
                           [&](auto moved) { told.push_back("none " + std::to_string(moved)); });
  program.layouts->restore(layout, fullscreen, [&](auto moved) { told.push_back("refused " + std::to_string(moved)); });
  EXPECT_THAT(told, IsEmpty());
  program.time.advance(0s);
  EXPECT_THAT(told, ElementsAre("none 0", "refused 0"));
  program.layouts->restore(layout, program.snapshot(), [&](auto /*moved*/) { told.emplace_back("destroyed"); });
  program.layouts.reset();
  program.time.advance(1s);
  EXPECT_EQ(told.size(), 2U) << "a manager that has gone tells nobody";
}

TEST(LayoutManager, OnlyOrdinaryWindowsOfKnownApplicationsAreCaptured) {
  LayoutProgram program(R"({
    "managedDisplaySpaces": [{"Display Identifier": "Main", "Current Space": {"ManagedSpaceID": 1},
      "Spaces": [{"ManagedSpaceID": 1}, {"ManagedSpaceID": 2, "type": 4}]}],
    "applications": [{"name": "A", "pid": 11, "bundleID": "app.a"}, {"name": "N", "pid": 12}],
    "windows": [{"number": 1, "pid": 12}, {"number": 2, "pid": 11, "space": 2}]})");
  const auto layout = program.layouts->save("manual", program.snapshot());
  EXPECT_THAT(layout.entries, IsEmpty()) << "one without bundle identifier, one full screen";
  EXPECT_THAT(program.desktop.files().list(layoutFolder), IsEmpty());
  program.commands.restoreLayout(program.snapshot());
  EXPECT_THAT(program.takeToasts(), ElementsAre("! No saved window layout for these displays yet"));
}

TEST(LayoutManager, AManualLayoutThatCannotBeUsedGivesWayToTheAutomaticOne) {
  std::string deep = "{\"entries\": " + std::string(100'000, '[');
  auto huge = PropertyList::parse(R"({"name": "manual", "savedAt": "2026-01-01T00:00:00Z", "displaySetup": "x"})");
  const PropertyList entry = {
      {"bundleID", "app.other"}, {"frame", PropertyList::parse("[[0, 0], [1, 1]]")}, {"spaceUUID", "managed-1"}};
  huge["entries"] = PropertyList(20'000, entry);
  struct Case {
    std::string manual;
    const char* toast;
  };
  const Case cases[] = {
      {"", "Put 1 windows back on their Spaces (rectangle.3.group)"},
      {deep, "Put 1 windows back on their Spaces (rectangle.3.group)"},
      {"\xff\xfe", "Put 1 windows back on their Spaces (rectangle.3.group)"},
      {R"([{"of": "another program"}])", "Put 1 windows back on their Spaces (rectangle.3.group)"},
      {huge.dump(), "Put 0 windows back on their Spaces (rectangle.3.group)"},
  };
  for (const auto& [manual, toast] : cases) {
    LayoutProgram program(desktopWithWindows(2));
    program.layouts->save("auto", program.snapshot());
    program.files().overwrite(layoutFile("manual"), manual);
    program.moveByHand(101, 4);
    program.readWindows();
    program.commands.restoreLayout(program.snapshot());
    program.time.advance(1s);
    EXPECT_THAT(program.takeToasts(), ElementsAre(toast));
    EXPECT_EQ(program.fileText(layoutFile("manual")), manual) << "left alone";
  }
}

TEST(LayoutManager, AFullDiskOnlyMeansThatNothingWasSaved) {
  LayoutProgram program(desktopWithWindows(2));
  program.layouts->save("manual", program.snapshot());
  const auto before = program.fileText(layoutFile("manual"));
  program.files().setDiskFull(true);
  program.moveByHand(101, 5);
  program.readWindows();
  program.lines.clear();
  EXPECT_EQ(program.layouts->save("manual", program.snapshot()).entries.size(), 2U);
  EXPECT_THAT(program.takeLog(), ElementsAre(HasSubstr("cannot write")));
  EXPECT_EQ(program.fileText(layoutFile("manual")), before);
}

TEST(LayoutManager, SavesByItselfEveryFiveMinutesUnlessHeld) {
  LayoutProgram program(desktopWithWindows(1));
  program.layouts->startAutoSave([&] { return program.snapshot(); });
  program.time.advance(300s - 1ms);
  EXPECT_EQ(program.fileText(layoutFile("auto")), "none");
  program.time.advance(1ms);
  const auto saved = program.fileText(layoutFile("auto"));
  EXPECT_THAT(saved, HasSubstr("\"name\": \"auto\""));
  EXPECT_EQ(program.fileText(layoutFile("auto-setup")), saved) << "the copy for when displays return";

  program.moveByHand(101, 2);
  auto hold = program.layouts->holdAutoSave();
  auto another = program.layouts->holdAutoSave();
  program.time.advance(300s);
  hold.cancel();
  program.time.advance(300s);
  another.cancel();
  program.preferences.setObject("autoSaveLayout", false);
  program.time.advance(300s);
  EXPECT_EQ(program.fileText(layoutFile("auto")), saved);
  program.preferences.setObject("autoSaveLayout", true);
  program.time.advance(300s);
  EXPECT_THAT(program.fileText(layoutFile("auto")), HasSubstr("managed-2"));
}

}  // namespace
}  // namespace tallowin
