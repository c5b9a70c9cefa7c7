#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <iostream>
#include <unistd.h>
#include <vector>

#include "app/command_line.h"
#include "app/doctor.h"
#include "app/help_text.h"
#include "app/main/host.h"
#include "app/main/instance.h"
#include "app/program.h"
#include "commands/outcome.h"

namespace {

using tallowin::CommandLine;
using tallowin::Mode;

int fail(const std::string& message, int status) {
  std::cerr << "tallowin: " << message << '\n';
  return status;
}

/// Whether there is to be one process for all that ask for this.
bool asksInstance(const CommandLine& line) {
  return line.mode == Mode::resident && !line.simulate;
}

int run(const CommandLine& line, std::unique_ptr<tallowin::InstanceLock> lock) {
  auto host = tallowin::makeHost(line, std::move(lock));
  if (!host) {
    return fail(host.error().message, host.error().exitStatus);
  }
  (*host)->begin();
  const int status =
      (*host)->end(tallowin::runProgram(line, (*host)->platform(), (*host)->storage(), std::cout, std::cerr));
  const bool hasChanged = line.mode == Mode::setSetting || line.mode == Mode::unsetSetting;
  if (hasChanged && !line.simulate && status == tallowin::exit_status::success) {
    tallowin::waitForSettings(line);
  }
  return status;
}

/// Files and sockets that are opened must not become standard input, output or error because nobody gave us one.
void openStandardDescriptors() {
  int opened = 0;
  while (opened >= 0 && opened <= STDERR_FILENO) {
    opened = ::open("/dev/null", O_RDWR);
  }
  ::close(opened);
}

/// The status, unless what was printed did not arrive.
int checkedOutput(int status) {
  std::cout.flush();
  return std::cout.good() ? status : fail("the output could not be written", tallowin::exit_status::outputFailed);
}

}  // namespace

int main(int argc, char** argv) {
  openStandardDescriptors();
  // A reader or an X server that goes away is seen as a failed write.
  std::signal(SIGPIPE, SIG_IGN);
  std::signal(SIGXFSZ, SIG_IGN);  // and so is a limit on the size of files
  const std::vector<std::string> arguments(argv + 1, argv + argc);
  const char* platform = std::getenv("TALLOWIN_PLATFORM");
  auto line =
      tallowin::parseCommandLine(arguments, platform != nullptr ? std::optional<std::string>(platform) : std::nullopt);
  if (!line) {
    return fail(line.error(), tallowin::exit_status::usage);
  }
  if (!line->warning.empty()) {
    std::cerr << "tallowin: " << line->warning << '\n';
  }
  if (line->mode == Mode::help) {
    std::cout << tallowin::helpText();
    return checkedOutput(tallowin::exit_status::success);
  }
  if (line->mode == Mode::version) {
    std::cout << "tallowin " TALLOWIN_VERSION "\n";
    return checkedOutput(tallowin::exit_status::success);
  }
  auto instance = asksInstance(*line) ? tallowin::findInstance(*line) : tallowin::Instance();
  if (instance.status) {
    return *instance.status;
  }
  if (tallowin::asksDoctor(*line)) {
    line->mode = Mode::doctor;  // nobody runs who could have answered
  }
  return checkedOutput(run(*line, std::move(instance.lock)));
}
