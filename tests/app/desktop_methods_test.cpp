// The methods by which other programs give commands.

#include "app/desktop_methods.h"

#include <gtest/gtest.h>
#include <set>

#include "commands/command_methods.h"

namespace tallowin {
namespace {

using namespace command;
using Result = DesktopService::Result;

const SpaceRef mail = SpaceRef::name("Mail");

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

TEST_F(DesktopMethodsTest, EveryCommandHasAMethodOfItsName) {
  std::set<std::size_t> seen;
  for (const auto& method : commandMethods()) {
    auto arguments = PropertyList::array();
    for (const auto& [type, name] : method.arguments) {
      if (!type.empty()) {
        arguments.push_back(type == "b" ? PropertyList(true) : PropertyList("Mail"));
      }
    }
    EXPECT_EQ(call(std::string(method.name), arguments), Result(nullptr)) << method.name;
    ASSERT_EQ(sent.size(), 1U) << method.name;
    const auto command = std::exchange(sent, {}).front();
    std::string name(nameOf(command));
    name.front() = static_cast<char>(std::toupper(name.front()));
    EXPECT_EQ(method.withoutText ? "AskFor" : name.c_str(), method.name.substr(0, method.withoutText ? 6 : 99));
    seen.insert(command.index());
  }
  EXPECT_EQ(seen.size(), std::variant_size_v<SpaceCommand>) << "a command without a method";
}

TEST_F(DesktopMethodsTest, ArgumentsBecomePayloads) {
  struct Case {
    const char* method;
    PropertyList arguments;
    SpaceCommand command;
  };
  const Case cases[] = {
      {"SwitchTo", {"3"}, SwitchTo{SpaceRef::number(3)}},
      {"Notes", {"current"}, Notes{SpaceRef::name("current")}},
      {"Step", PropertyList::array({false}), Step{false}},
      {"Rename", {"Mail", ""}, Rename{mail, ""}},
      {"AskForName", {"Mail"}, Rename{mail, std::nullopt}},
      {"AskForNote", {"Mail"}, Note{mail, std::nullopt}},
      {"Profile", {"3"}, Profile{"3"}},
  };
  for (const auto& [method, arguments, command] : cases) {
    EXPECT_TRUE(call(method, arguments)) << method;
    EXPECT_EQ(std::exchange(sent, {}), std::vector{command}) << method;
  }
}

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
