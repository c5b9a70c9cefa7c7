// Any program may call our methods over D-Bus with anything, and what we answer holds texts that others wrote. The
// input is JSON: the name of a method and its arguments, which are put into a message too, as an answer's value would
// be.

#include <algorithm>
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
  int performed = 0;
  ScriptingBridge bridge;
  bridge.handler = [&](const SpaceCommand&) { ++performed; };
  const auto openURL = [&](const std::string& url) {
    const auto command = commandFromText(url);
    performed += command ? 1 : 0;
    return command ? std::nullopt : std::optional(command.error());
  };
  const auto request = [](const Request& words, const std::unique_ptr<Caller>& caller) {
    caller->exit(readRequestWords(words.arguments) ? 0 : exit_status::usage);
  };
  std::optional<DesktopService::Result> answer;
  run(desktopMethods(bridge, openURL, request, "/"), interface, method, arguments, [&](const auto& result) {
    require(!answer, "a call is answered once");
    answer = result;
  });
  require(answer.has_value(), "a call is answered");
  const auto& result = *answer;
  require(result || !result.error().message.empty(), "who is refused is told why");
  require(result || performed == 0 || method == "Open",
          "what is refused is not done, but of several URLs the good ones");
}

/// A connection on which nothing is ever sent, as messages need one.
sd_bus* connection() {
  using Bus = std::unique_ptr<sd_bus, BusUnref<sd_bus_unref>>;
  static const Bus bus = [] {
    std::array<int, 2> ends{};
    sd_bus* made = nullptr;
    require(socketpair(AF_UNIX, SOCK_STREAM | SOCK_NONBLOCK, 0, ends.data()) == 0 && sd_bus_new(&made) >= 0 &&
                sd_bus_set_fd(made, ends[0], ends[0]) >= 0 && sd_bus_start(made) >= 0,
            "there is a connection");
    return Bus(made);
  }();
  return bus.get();
}

/// A text as it comes over the bus, where a zero byte ends it.
PropertyList cutAtZero(const PropertyList& value) {
  auto cut = value;
  if (value.is_string()) {
    cut = value.get<std::string>().c_str();
  } else if (value.is_array()) {
    std::ranges::transform(value, cut.begin(), cutAtZero);
  }
  return cut;
}

void transmit(const PropertyList& value) {
  for (const char* const type : {"s", "b", "as", "x", "d", "(sb)", "a(sxb)", "a{sv}"}) {
    sd_bus_message* made = nullptr;
    require(sd_bus_message_new_signal(connection(), &made, "/x", "x.y", "Z") >= 0, "there is a message");
    const BusMessage message(made);
    const std::string_view declared(type);
    const bool readable = declared == "s" || declared == "b" || declared == "as";
    if (appendValue(made, type, value) < 0 || !readable) {
      continue;
    }
    require(sd_bus_message_seal(made, 1, 0) >= 0 && sd_bus_message_rewind(made, 1) >= 0, "a message is complete");
    require(readArgument(made, type) == cutAtZero(value), "a value is read as it was sent");
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
