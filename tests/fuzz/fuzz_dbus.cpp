// Any program may call our methods over D-Bus with anything. The input is JSON: the name of a method and its arguments.

#include "base/json_text.h"
#include "base/property_list_reading.h"
#include "commands/cli/request_words.h"
#include "commands/dbus/desktop_methods.h"
#include "commands/outcome.h"
#include "tests/fuzz/fuzzing.h"

using namespace tallowin;

namespace {

void call(const char* interface, const std::string& method, const PropertyList& arguments) {
  ScriptingBridge bridge;
  bridge.handler = [](const SpaceCommand&) {};
  const auto openURL = [](const std::string& url) {
    const auto command = commandFromText(url);
    return command ? std::nullopt : std::optional(command.error());
  };
  const auto request = [](const Request& words, const std::unique_ptr<Caller>& caller) {
    caller->exit(readRequestWords(words.arguments) ? 0 : exit_status::usage);
  };
  int answers = 0;
  run(desktopMethods(bridge, openURL, request, "/"), interface, method, arguments,
      [&](const auto& /*result*/) { ++answers; });
  require(answers == 1, "a call is answered once");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const auto json = parseJSON(inputText(data, size));
  if (!json || !json->is_array() || json->size() != 2) {
    return -1;
  }
  const auto method = property_list::text((*json)[0]).value_or("");
  for (const auto* const interface : {commandInterface, applicationInterface}) {
    call(interface, method, (*json)[1]);
  }
  return 0;
}
