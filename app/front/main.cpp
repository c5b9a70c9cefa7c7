// What a user calls as "tallowin": hands the request to the running instance and ends with its answer. Whatever that
// instance cannot do is done by the whole program, which takes this one's place. It links nothing that takes time to
// load, as it is what hot keys and scripts wait for.

#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <unistd.h>

#include "app/front/option_table.h"
#include "platform/channel/channel_client.h"
#include "platform/channel/channel_folder.h"

namespace {

constexpr int unavailable = 69;  // EX_UNAVAILABLE (sysexits.h)

/// Where the whole program is, seen from the folder of this one: beside it in a build, else where it is installed.
constexpr const char* places[] = {"/" TALLOWIN_WHOLE_PROGRAM, "/" TALLOWIN_PRIVATE_FOLDER "/" TALLOWIN_WHOLE_PROGRAM};

int becomeWholeProgram(char** argv) {
  char self[PATH_MAX];
  const auto length = ::readlink("/proc/self/exe", self, sizeof self);
  const std::string path(self, length > 0 ? static_cast<std::size_t>(length) : 0);
  const auto folder = path.substr(0, path.rfind('/'));
  for (const auto* place : places) {
    ::execv((folder + place).c_str(), argv);
    if (errno != ENOENT) {
      break;
    }
  }
  std::fprintf(stderr, "tallowin: cannot start the whole program, %s: %s\n", TALLOWIN_WHOLE_PROGRAM,
               std::strerror(errno));
  return unavailable;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 1) {
    return unavailable;
  }
  const auto arguments = tallowin::readFrontArguments(argv + 1);
  if (!arguments.forInstance) {
    return becomeWholeProgram(argv);
  }
  const auto result = tallowin::handOver(tallowin::channelFolder(arguments.home), arguments.request);
  switch (result.outcome) {
    case tallowin::HandOver::Outcome::answered:
      std::fputs(tallowin::remarksOn(result.answerer, TALLOWIN_VERSION, std::getenv("DISPLAY")).c_str(), stderr);
      return result.status;
    case tallowin::HandOver::Outcome::notRunning:
      return becomeWholeProgram(argv);
    case tallowin::HandOver::Outcome::unreachable:
      break;
  }
  std::fprintf(stderr, "tallowin: %s\n", result.why.c_str());
  return unavailable;
}
