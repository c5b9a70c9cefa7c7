// Any bytes may come in over HTTP.

#include "commands/http/local_api.h"
#include "tests/fuzz/fuzzing.h"
#include "tests/storing_program.h"

using namespace tallowin;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static StoringProgram program("{}");
  static LocalAPI api(program.platform, program.paths, program.settings);
  program.lines.clear();
  program.files().replace(supportFolder + "state.json", "[]");
  program.files().replace(supportFolder + "api-token.txt", "key\n");
  bool isPerformed = false;
  api.onCommand = [&](const SpaceCommand&) { isPerformed = true; };

  const auto request = inputText(data, size);
  const auto answer = api.respond(request);
  program.time.advance(Duration::zero());
  require(answer.empty() || answer.starts_with("HTTP/1.1 "), "an answer has a head");
  require(!isPerformed || request.find("Bearer key") != std::string_view::npos, "nobody else is let in");
  return 0;
}
