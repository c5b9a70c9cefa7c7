// Any bytes may come in over HTTP.

#include "base/json_text.h"
#include "commands/http/local_api.h"
#include "tests/fuzz/fuzzing.h"
#include "tests/storing_program.h"

using namespace tallowin;

namespace {

/// What the answer's head gives as the length of its body.
std::string givenLength(std::string_view head) {
  constexpr std::string_view name = "\r\nContent-Length: ";
  const auto begin = head.find(name) + name.size();
  return std::string(head.substr(begin, head.find("\r\n", begin) - begin));
}

void lookAtAnswer(std::string_view answer) {
  const auto end = answer.find("\r\n\r\n");
  require(answer.starts_with("HTTP/1.1 ") && end != std::string_view::npos, "an answer has a head");
  const auto body = answer.substr(end + 4);
  require(givenLength(answer.substr(0, end)) == std::to_string(body.size()), "an answer knows its length");
  require(parseJSON(body).has_value(), "an answer is JSON");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static StoringProgram program("{}");
  static LocalAPI api({program.desktop.files(), program.paths, program.settings, program.desktop.listeners(),
                       program.time, program.desktop.system(), program.desktop.log()});
  program.lines.clear();
  program.files().replace(supportFolder + "state.json", "[]");
  program.files().replace(supportFolder + "api-token.txt", "key\n");
  int performed = 0;
  int refused = 0;
  api.onCommand = [&](const SpaceCommand&) { ++performed; };
  api.onDoubledKey = [&](const DoubledQueryKey&) { ++refused; };

  const auto request = inputText(data, size);
  const auto answer = api.respond(request);
  program.time.advance(Duration::zero());
  require(answer.empty() == (refused == 1), "there is no answer to a URL that names a key twice, and to no other");
  require(answer.ends_with(R"({"ok":true})") == (performed == 1), "what is performed is answered so");
  require(performed + refused == 0 || request.find("Bearer key") != std::string_view::npos, "nobody else is let in");
  if (!answer.empty()) {
    lookAtAnswer(answer);
  }
  return 0;
}
