// How long the window list takes with real windows, beside a command that does the same: bench_window_list COUNT...
// For each count the program has so many windows open on the server that $DISPLAY names, reads the list 20 times, and
// runs `wmctrl -lpGx` 20 times, taking turns. Prints the medians and their ratio. Reads with the program's own process
// counted as another one, as the windows are its own.

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

#include "platform/x11/x11_applications.h"
#include "platform/x11/x11_window_list.h"

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

bool measure(X11Connection& connection, std::size_t count) {
  X11WindowReader reader(connection, 0);
  InstalledApplications installed(processXdgEnvironment());
  X11Applications applications(reader, installed);
  X11WindowList list(connection, reader, applications);
  std::size_t before = reader.read().windows.size();
  for (int number = 0; before < count; ++before, ++number) {
    openWindow(connection, number);
  }
  if (!waitForWindows(reader, count)) {
    std::cerr << "the window manager does not manage " << count << " windows\n";
    return false;
  }
  std::vector<double> ours;
  std::vector<double> theirs;
  for (int run = 0; run < runs; ++run) {
    ours.push_back(timed([&] { list.CGWindowListCopyWindowInfo(CGWindowListOption::excludeDesktopElements, 0); }));
    bool succeeded = false;
    theirs.push_back(timed([&] { succeeded = runWmctrl(); }));
    if (!succeeded) {
      std::cerr << "wmctrl -lpGx failed\n";
      return false;
    }
  }
  std::printf("%5zu windows: list %8.2f ms   wmctrl -lpGx %8.2f ms   ratio %.2f\n", count, median(ours), median(theirs),
              median(ours) / median(theirs));
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
