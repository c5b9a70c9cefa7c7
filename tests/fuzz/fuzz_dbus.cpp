// Any program may call our methods over D-Bus with anything, and what we answer holds texts that others wrote. The
// input is JSON: the name of a method and its arguments, which are put into a message too, as an answer's value would
// be.

#include <array>
#include <sys/socket.h>

#include "base/json_text.h"
#include "base/property_list_reading.h"
#include "commands/cli/request_words.h"
#include "commands/dbus/desktop_methods.h"
#include "commands/outcome.h"
#include "platform/dbus/bus_link.h"
#include "platform/dbus/bus_values.h"
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

/// A connection on which nothing is ever sent, as messages need one.
sd_bus* connection() {
  static sd_bus* const bus = [] {
    std::array<int, 2> ends{};
    sd_bus* made = nullptr;
    require(socketpair(AF_UNIX, SOCK_STREAM | SOCK_NONBLOCK, 0, ends.data()) == 0 && sd_bus_new(&made) >= 0 &&
                sd_bus_set_fd(made, ends[0], ends[0]) >= 0 && sd_bus_start(made) >= 0,
            "there is a connection");
    return made;
  }();
  return bus;
}

void transmit(const PropertyList& value) {
  for (const char* const type : {"s", "b", "as", "x", "d", "(sb)", "a(sxb)", "a{sv}"}) {
    sd_bus_message* made = nullptr;
    require(sd_bus_message_new_signal(connection(), &made, "/x", "x.y", "Z") >= 0, "there is a message");
    const BusMessage message(made);
    static_cast<void>(appendValue(made, type, value));
  }
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
  transmit((*json)[1]);
  return 0;
}
