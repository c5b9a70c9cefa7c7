// How long it takes to know about real windows, beside a command that lists them, in turns:
//
// bench_window_list RUNS list|contents COMMAND
//
// `list` reads the list of the windows on the server that $DISPLAY names; `contents` also the application and the
// Spaces of each, as the contents of the Spaces are read.

#include <iostream>
#include <map>
#include <memory>
#include <string>

#include "bench/side_by_side.h"
#include "bench/stopwatch.h"
#include "platform/x11/x11_session.h"
#include "tests/platform/x11/stepped_loop.h"

namespace tallowin {
namespace {

class NoProcesses : public Processes {
 public:
  std::expected<void, std::string> launch(const ProcessRequest& /*request*/) override { return {}; }
  std::expected<std::string, std::string> run(const ProcessRequest& /*request*/) override { return {}; }
};

/// A session that is asked.
struct Services {
  std::optional<std::vector<DesktopWindow>> readList() { return session->windows.list(WindowScope::all); }

  void readContents() {
    std::map<ProcessID, int> windowsOf;
    for (const auto& window : readList().value_or(std::vector<DesktopWindow>())) {
      session->workspace.runningApplicationWithProcessIdentifier(window.pid);
      ++windowsOf[window.pid];
    }
    for (const auto& [pid, count] : windowsOf) {
      session->workspace.runningApplicationWithProcessIdentifier(pid);
    }
  }

  SteppedLoop loop;
  NoProcesses processes;
  KeptDesktopPlaces places;
  std::unique_ptr<X11Session> session;
};

}  // namespace
}  // namespace tallowin

int main(int argc, char** argv) {
  using namespace tallowin::bench;
  const Turns turns(argc, argv);  // its first "command" is what to read
  tallowin::Services services;
  if (auto connection = tallowin::X11Connection::open()) {
    services.session =
        std::make_unique<tallowin::X11Session>(*std::move(connection), services.loop, services.loop, services.loop,
                                               services.processes, services.places, 0, [] {});
  }
  if (!services.session || turns.commands.size() != 2) {
    std::cerr << "usage: bench_window_list RUNS list|contents COMMAND, on an X server\n";
    return 64;
  }
  const bool withContents = turns.commands[0] == "contents";
  const auto take = [&](std::size_t subject, std::size_t /*turn*/) -> std::optional<double> {
    services.loop.runReady();
    const Stopwatch stopwatch;
    if (subject == 1) {
      return run(wordsFor(turns.commands[1], 0)) ? std::optional(stopwatch.now()) : std::nullopt;
    }
    withContents ? services.readContents() : static_cast<void>(services.readList());
    return stopwatch.now();
  };
  return turns.measure(take, 2);
}
