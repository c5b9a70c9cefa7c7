// The methods by which other programs give commands.

#include "app/desktop_methods.h"

#include <gtest/gtest.h>

namespace tallowin {
namespace {

using namespace command;
using Result = DesktopService::Result;

class DesktopMethodsTest : public testing::Test {
 protected:
  DesktopMethodsTest() {
    bridge.handler = [this](const SpaceCommand& command) { sent.push_back(command); };
  }

  Result call(const std::string& method, const PropertyList& arguments, const char* interface = commandInterface) {
    return run(methods, interface, method, arguments);
  }

  std::vector<SpaceCommand> sent;
  std::vector<std::string> opened;
  ScriptingBridge bridge;
  const std::vector<DesktopMethod> methods = desktopMethods(bridge, [this](const std::string& url) {
    opened.push_back(url);
    return url == "bad" ? std::optional(URLFault{URLFault::Kind::unknown, "not understood"}) : std::nullopt;
  });
};

TEST_F(DesktopMethodsTest, WhatDoesNotFitIsRefused) {
  const std::pair<const char*, PropertyList> cases[] = {
      {"SwitchTo", PropertyList::array()},
      {"SwitchTo", {"1", "2"}},
      {"SwitchTo", PropertyList::array({3})},
      {"SwitchTo", nullptr},
      {"Step", {"true"}},
      {"Back", {"1"}},
  };
  for (const auto& [method, arguments] : cases) {
    const auto result = call(method, arguments);
    ASSERT_FALSE(result) << method << arguments;
    EXPECT_EQ(result.error().name, "org.freedesktop.DBus.Error.InvalidArgs");
  }
  EXPECT_EQ(call("Rename", {"1"}).error().message, "it is called so: Rename(s space, s name)");
  EXPECT_FALSE(call("Activate", {PropertyList::object()})) << "of the other interface";
  EXPECT_TRUE(sent.empty());
}

TEST_F(DesktopMethodsTest, URLsAreAllOpenedAndTheFirstFaultIsAnswered) {
  const PropertyList urls = {"bad", "good", "bad"};
  const ServiceError fault{"com.quorvex.Tallowin.Error.NotUnderstood", "not understood"};
  EXPECT_EQ(call("Open", {urls, PropertyList::object()}, applicationInterface), Result(std::unexpected(fault)));
  EXPECT_EQ(opened, std::vector<std::string>(urls));
  EXPECT_EQ(call("Perform", {"good"}), Result(nullptr));
  EXPECT_EQ(call("Perform", {"bad"}), Result(std::unexpected(fault)));
}

}  // namespace
}  // namespace tallowin
