// How long it takes to know about real windows, beside a command that lists them, in turns:
//
// bench_window_list RUNS list|contents COMMAND
//
// `list` reads the list of the windows on the server that $DISPLAY names; `contents` also the application and the
// Spaces of each, as the contents of the Spaces are read.

#include <iostream>
#include <string>

#include "bench/side_by_side.h"
#include "bench/stopwatch.h"
#include "platform/x11/x11_desktop_operations.h"
#include "platform/x11/x11_window_list.h"
#include "platform/x11/x11_window_server.h"
#include "platform/x11/x11_workspace.h"
#include "tests/platform/x11/stepped_loop.h"

namespace tallowin {
namespace {

class SilentLog : public Log {
 public:
  void write(Level /*level*/, std::string_view /*category*/, std::string_view /*message*/) override {}
};

class NoProcesses : public Processes {
 public:
  std::expected<void, std::string> launch(const ProcessRequest& /*request*/) override { return {}; }
  std::expected<std::string, std::string> run(const ProcessRequest& /*request*/) override { return {}; }
};

/// The services that are asked.
struct Services {
  explicit Services(X11Connection& on) : connection(on) {}

  std::optional<PropertyList> readList() {
    return list.CGWindowListCopyWindowInfo(CGWindowListOption::excludeDesktopElements, 0);
  }

  void readContents() {
    const auto found = readList();
    std::map<ProcessID, int> windowsOf;
    for (const auto& window : found.value_or(PropertyList::array())) {
      const auto pid = window["kCGWindowOwnerPID"].get<ProcessID>();
      workspace.runningApplicationWithProcessIdentifier(pid);
      windowServer.CGSBridgeCopySpacesForWindow(window["kCGWindowNumber"].get<WindowNumber>());
      ++windowsOf[pid];
    }
    for (const auto& [pid, count] : windowsOf) {
      workspace.runningApplicationWithProcessIdentifier(pid);
    }
  }

  X11Connection& connection;
  SteppedLoop loop;
  SilentLog log;
  NoProcesses processes;
  SymbolicHotKeys hotKeys;
  KeptDesktopPlaces places;
  X11DesktopReader desktops{connection, places};
  X11Windows windows{connection, desktops, processes, loop, 0};
  X11DesktopOperations operations{connection, desktops, places, windows, loop};
  EmulatedDock dock{operations, hotKeys, loop, loop, log, {}};
  X11WindowServer windowServer{connection, desktops, hotKeys, dock, windows, [](std::string_view) {}};
  X11WindowList list{connection, windows.reader, windows.applications};
  X11Workspace workspace{loop, windows.launcher, windows.context};
};

}  // namespace
}  // namespace tallowin

int main(int argc, char** argv) {
  using namespace tallowin::bench;
  const Turns turns(argc, argv);  // its first "command" is what to read
  const auto connection = tallowin::X11Connection::open();
  if (!connection || turns.commands.size() != 2) {
    std::cerr << "usage: bench_window_list RUNS list|contents COMMAND, on an X server\n";
    return 64;
  }
  tallowin::Services services(**connection);
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
