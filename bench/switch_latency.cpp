#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <iomanip>
#include <iostream>
#include <memory>
#include <optional>
#include <spawn.h>
#include <sstream>
#include <string>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>
#include <xcb/xcb.h>

// How long programs take to switch desktops: from the moment that the program is started to the moment that the root
// window's _NET_CURRENT_DESKTOP has the new value, as a connection of its own is told. The programs take turns, so that
// a busy machine slows them all down alike.
//
// switch_latency RUNS COMMAND...: in a command %i stands for the desktop's index from 0 and %n for its number from 1.

namespace {

using Clock = std::chrono::steady_clock;

struct Free {
  void operator()(void* memory) const { std::free(memory); }
};
using Event = std::unique_ptr<xcb_generic_event_t, Free>;

/// Sees the current desktop change.
class Witness {
 public:
  Witness() : connection_(xcb_connect(nullptr, nullptr)) {
    if (xcb_connection_has_error(connection_) != 0) {
      return;
    }
    root_ = xcb_setup_roots_iterator(xcb_get_setup(connection_)).data->root;
    const std::string name = "_NET_CURRENT_DESKTOP";
    const std::unique_ptr<xcb_intern_atom_reply_t, Free> atom(xcb_intern_atom_reply(
        connection_, xcb_intern_atom(connection_, 0, static_cast<std::uint16_t>(name.size()), name.data()), nullptr));
    atom_ = atom ? atom->atom : xcb_atom_t{XCB_ATOM_NONE};
    const std::uint32_t mask = XCB_EVENT_MASK_PROPERTY_CHANGE;
    xcb_change_window_attributes(connection_, root_, XCB_CW_EVENT_MASK, &mask);
  }
  ~Witness() { xcb_disconnect(connection_); }
  Witness(const Witness&) = delete;
  Witness& operator=(const Witness&) = delete;

  [[nodiscard]] std::optional<std::uint32_t> current() const {
    const std::unique_ptr<xcb_get_property_reply_t, Free> reply(xcb_get_property_reply(
        connection_, xcb_get_property(connection_, 0, root_, atom_, XCB_ATOM_CARDINAL, 0, 1), nullptr));
    if (!reply || xcb_get_property_value_length(reply.get()) < 4) {
      return std::nullopt;
    }
    std::uint32_t value = 0;
    std::memcpy(&value, xcb_get_property_value(reply.get()), sizeof value);
    return value;
  }

  /// When the current desktop became `index`; nothing when the connection is lost. Waits for it.
  [[nodiscard]] std::optional<Clock::time_point> waitFor(std::uint32_t index) const {
    while (const Event event{xcb_wait_for_event(connection_)}) {
      const auto now = Clock::now();
      const auto& change = reinterpret_cast<const xcb_property_notify_event_t&>(*event);
      if ((event->response_type & 0x7F) == XCB_PROPERTY_NOTIFY && change.atom == atom_ && current() == index) {
        return now;
      }
    }
    return std::nullopt;
  }

 private:
  xcb_connection_t* connection_;
  xcb_window_t root_ = XCB_WINDOW_NONE;
  xcb_atom_t atom_ = XCB_ATOM_NONE;
};

std::vector<std::string> wordsFor(const std::string& command, std::uint32_t index) {
  std::vector<std::string> words;
  std::istringstream stream(command);
  for (std::string word; stream >> word;) {
    words.push_back(word == "%i" ? std::to_string(index) : word == "%n" ? std::to_string(index + 1) : word);
  }
  return words;
}

/// Starts a program whose output goes nowhere; its process id, or 0.
pid_t start(std::vector<std::string> words) {
  std::vector<char*> pointers;
  for (auto& word : words) {
    pointers.push_back(word.data());
  }
  pointers.push_back(nullptr);
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, "/dev/null", 1, 0);
  pid_t process = 0;
  const int error = posix_spawnp(&process, pointers[0], &actions, nullptr, pointers.data(), environ);
  posix_spawn_file_actions_destroy(&actions);
  return error == 0 ? process : 0;
}

/// Milliseconds of one switch, from start to change; nothing when it did not take place. Waits for the program's end.
std::optional<double> measure(const Witness& witness, const std::string& command, std::uint32_t index) {
  const auto words = wordsFor(command, index);
  const auto began = Clock::now();
  const auto process = start(words);
  if (process == 0) {
    return std::nullopt;
  }
  alarm(10);  // a switch that never comes ends the whole measurement
  const auto changed = witness.waitFor(index);
  waitpid(process, nullptr, 0);
  alarm(0);
  return changed ? std::optional(std::chrono::duration<double, std::milli>(*changed - began).count()) : std::nullopt;
}

double quantile(const std::vector<double>& sorted, double part) {
  return sorted[static_cast<std::size_t>(std::lround(part * static_cast<double>(sorted.size() - 1)))];
}

void print(const std::vector<std::string>& commands, std::vector<std::vector<double>>& times) {
  std::cout << std::fixed << std::setprecision(2);
  double first = 0;
  for (std::size_t i = 0; i < commands.size(); ++i) {
    std::ranges::sort(times[i]);
    const double median = quantile(times[i], 0.5);
    first = i == 0 ? median : first;
    std::cout << "median " << median << " ms  p95 " << quantile(times[i], 0.95) << " ms  " << median / first
              << " x the first  n=" << times[i].size() << "  " << commands[i] << '\n';
  }
}

int run(std::size_t runs, const std::vector<std::string>& commands) {
  const Witness witness;
  auto current = witness.current();
  if (!current) {
    std::cerr << "switch_latency: no window manager tells its current desktop\n";
    return EXIT_FAILURE;
  }
  std::vector<std::vector<double>> times(commands.size());
  for (std::size_t turn = 0; turn < runs; ++turn) {
    for (std::size_t i = 0; i < commands.size(); ++i) {
      current = *current == 0 ? 1 : 0;
      const auto time = measure(witness, commands[i], *current);
      if (!time) {
        std::cerr << "switch_latency: no switch by: " << commands[i] << '\n';
        return EXIT_FAILURE;
      }
      times[i].push_back(*time);
    }
  }
  print(commands, times);
  return EXIT_SUCCESS;
}

}  // namespace

int main(int argc, char** argv) {
  const std::size_t runs = argc > 2 ? std::strtoul(argv[1], nullptr, 10) : 0;
  if (runs == 0) {
    std::cerr << "usage: switch_latency RUNS COMMAND...\n";
    return 64;
  }
  return run(runs, {argv + 2, argv + argc});
}
