// The methods by which other programs give commands.

#include "commands/dbus/desktop_methods.h"

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
    Result result;
    run(methods, interface, method, arguments, [&](const Result& replied) { result = replied; });
    return result;
  }

  std::vector<SpaceCommand> sent;
  std::vector<std::string> opened;
  std::vector<std::vector<std::string>> requested;
  ScriptingBridge bridge;
  const std::vector<DesktopMethod> methods = desktopMethods(
      bridge,
      [this](const std::string& url) {
        opened.push_back(url);
        return url == "bad" ? std::optional(URLFault{URLFault::Kind::unknown, "not understood"}) : std::nullopt;
      },
      [this](const Request& request, const std::unique_ptr<Caller>& caller) {
        requested.push_back(request.arguments);
        caller->err("tallowin: no\n");
        if (request.arguments.front() == "bad") {
          caller->exit(1);
        }
      },
      "/home/user");
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

TEST_F(DesktopMethodsTest, WordsAreAnsweredOnceWithWhatWasSaid) {
  const auto words = [](const char* word) { return PropertyList::array({PropertyList::array({word})}); };
  const PropertyList no = PropertyList::array({false, "no"});
  EXPECT_EQ(call("Do", words("bad")), Result(no));
  EXPECT_EQ(call("Do", words("forgotten")), Result(no));
  EXPECT_EQ(requested.size(), 2U);
  EXPECT_TRUE(call("Do", words("watch"))) << "which never ends";
  EXPECT_EQ(requested.size(), 2U);
}

}  // namespace
}  // namespace tallowin
