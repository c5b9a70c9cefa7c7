// How long it takes to know about real windows, beside a command that lists them: bench_window_list COUNT...
// For each count the program has so many windows open on the server that $DISPLAY names, and 20 times each, taking
// turns, reads the list, reads the list with the application and the Spaces of each window as the contents of the
// Spaces are read, and runs `wmctrl -lpGx`. Prints the medians and the ratios to the latter's. Reads with the program's
// own process counted as another one, as the windows are its own.

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <iostream>
#include <spawn.h>
#include <string>
#include <sys/wait.h>
#include <thread>
#include <vector>

#include "platform/x11/x11_desktop_operations.h"
#include "platform/x11/x11_window_list.h"
#include "platform/x11/x11_window_server.h"
#include "platform/x11/x11_workspace.h"
#include "tests/platform/x11/stepped_loop.h"

namespace tallowin {
namespace {

using Milliseconds = std::chrono::duration<double, std::milli>;

constexpr int runs = 20;

xcb_window_t openWindow(X11Connection& connection, int number) {
  auto* const raw = connection.raw();
  const auto window = xcb_generate_id(raw);
  xcb_create_window(raw, XCB_COPY_FROM_PARENT, window, connection.root(), static_cast<std::int16_t>(number % 600),
                    static_cast<std::int16_t>(number % 400), 200, 150, 0, XCB_WINDOW_CLASS_INPUT_OUTPUT,
                    XCB_COPY_FROM_PARENT, 0, nullptr);
  const auto title = "Window " + std::to_string(number);
  const std::string wmClass("bench\0Bench\0", 12);
  xcb_change_property(raw, XCB_PROP_MODE_REPLACE, window, XCB_ATOM_WM_CLASS, XCB_ATOM_STRING, 8,
                      static_cast<std::uint32_t>(wmClass.size()), wmClass.data());
  xcb_change_property(raw, XCB_PROP_MODE_REPLACE, window, XCB_ATOM_WM_NAME, XCB_ATOM_STRING, 8,
                      static_cast<std::uint32_t>(title.size()), title.data());
  xcb_map_window(raw, window);
  xcb_flush(raw);
  return window;
}

/// Waits until the window manager manages as many windows. False when that takes longer than a minute.
bool waitForWindows(X11WindowReader& reader, std::size_t count) {
  const auto end = std::chrono::steady_clock::now() + std::chrono::minutes(1);
  while (reader.read().windows.size() < count) {
    if (std::chrono::steady_clock::now() > end) {
      return false;
    }
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
  }
  return true;
}

bool runWmctrl() {
  char program[] = "wmctrl";
  char options[] = "-lpGx";
  char* arguments[] = {program, options, nullptr};
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
  pid_t process = 0;
  const bool started = posix_spawnp(&process, program, &actions, nullptr, arguments, environ) == 0;
  posix_spawn_file_actions_destroy(&actions);
  int status = 1;
  return started && waitpid(process, &status, 0) == process && status == 0;
}

template <typename Work>
double timed(Work work) {
  const auto begin = std::chrono::steady_clock::now();
  work();
  return Milliseconds(std::chrono::steady_clock::now() - begin).count();
}

double median(std::vector<double> times) {
  std::ranges::sort(times);
  return times[times.size() / 2];
}

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
  X11DesktopReader desktops{connection};
  X11Windows windows{connection, desktops, processes, loop, 0};
  X11DesktopOperations operations{connection, desktops, windows.reader, windows.actions, windows.refusals, loop};
  EmulatedDock dock{operations, hotKeys, loop, loop, log, {}};
  X11WindowServer windowServer{connection, desktops, hotKeys, dock, windows, [](std::string_view) {}};
  X11WindowList list{connection, windows.reader, windows.applications};
  X11Workspace workspace{loop, windows.launcher, windows.context};
};

bool measure(X11Connection& connection, std::size_t count) {
  Services services(connection);
  auto& reader = services.windows.reader;
  std::size_t before = reader.read().windows.size();
  for (int number = 0; before < count; ++before, ++number) {
    openWindow(connection, number);
  }
  if (!waitForWindows(reader, count)) {
    std::cerr << "the window manager does not manage " << count << " windows\n";
    return false;
  }
  std::vector<double> lists;
  std::vector<double> contents;
  std::vector<double> theirs;
  for (int run = 0; run < runs; ++run) {
    lists.push_back(timed([&] { services.readList(); }));
    services.loop.runReady();
    contents.push_back(timed([&] { services.readContents(); }));
    services.loop.runReady();
    bool succeeded = false;
    theirs.push_back(timed([&] { succeeded = runWmctrl(); }));
    if (!succeeded) {
      std::cerr << "wmctrl -lpGx failed\n";
      return false;
    }
  }
  const double wmctrl = median(theirs);
  std::printf("%5zu windows: list %8.2f ms (%.2f)   contents %8.2f ms (%.2f)   wmctrl -lpGx %8.2f ms\n", count,
              median(lists), median(lists) / wmctrl, median(contents), median(contents) / wmctrl, wmctrl);
  return true;
}

}  // namespace
}  // namespace tallowin

int main(int argc, char** argv) {
  const auto connection = tallowin::X11Connection::open();
  if (!connection) {
    std::cerr << connection.error() << "\n";
    return 69;
  }
  for (int i = 1; i < argc; ++i) {
    if (!tallowin::measure(**connection, std::strtoul(argv[i], nullptr, 10))) {
      return 1;
    }
  }
  return 0;
}
