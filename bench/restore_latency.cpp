// How long it takes to put all windows back where they were, in milliseconds for each window: from the start of the
// first command to the moment that the last window is in place. Before each time every window is moved by 40 and 30
// pixels, and to the desktop with the index AWAY.
//
// restore_latency RUNS AWAY COMMAND [EACH...]: COMMAND puts all back where they are now; the EACH are run for every
// window, one after the other, with its id for %w, and the corner of its frame for %x and %y

#include <iostream>
#include <thread>

#include "bench/side_by_side.h"
#include "bench/stopwatch.h"
#include "bench/window_witness.h"

namespace {

using namespace tallowin::bench;
using namespace std::chrono_literals;

/// Windows and where they belong.
class Layout {
 public:
  explicit Layout(std::uint32_t away) {
    constexpr Place offset{40, 30};
    constexpr int middle = 600;  // what stands further right is moved to the left, so that it stays on the screen
    for (auto place : home_) {
      place.x += place.x < middle ? offset.x : -offset.x;
      place.y += place.y < middle / 2 ? offset.y : -offset.y;
      place.desktop = away;
      displaced_.push_back(place);
    }
  }

  [[nodiscard]] std::size_t size() const { return windows_.size(); }

  [[nodiscard]] bool scatter() const {
    for (std::size_t i = 0; i < windows_.size(); ++i) {
      witness_.move(windows_[i], displaced_[i]);
    }
    const bool done = wait(displaced_);
    std::this_thread::sleep_for(100ms);  // until those who watch windows have seen it
    return done;
  }
  [[nodiscard]] bool waitUntilHome() const { return wait(home_); }

  /// The words of a command for each window.
  [[nodiscard]] std::vector<std::vector<std::string>> commands(const std::vector<std::string>& templates) const {
    std::vector<std::vector<std::string>> all;
    for (std::size_t i = 0; i < windows_.size(); ++i) {
      const auto [left, top] = witness_.frame(windows_[i]);
      const std::pair<const char*, std::string> values[] = {{"%w", std::to_string(windows_[i])},
                                                            {"%x", std::to_string(home_[i].x - left)},
                                                            {"%y", std::to_string(home_[i].y - top)}};
      for (auto command : templates) {
        for (const auto& [mark, value] : values) {
          if (const auto at = command.find(mark); at != std::string::npos) {
            command.replace(at, 2, value);
          }
        }
        all.push_back(wordsFor(command, 0));
      }
    }
    return all;
  }

 private:
  [[nodiscard]] bool wait(const std::vector<Place>& wanted) const {
    const Stopwatch stopwatch;
    while (witness_.places(windows_) != wanted) {
      if (stopwatch.now() > 30'000) {
        return false;
      }
      std::this_thread::sleep_for(1ms);
    }
    return true;
  }

  WindowWitness witness_;
  std::vector<xcb_window_t> windows_ = witness_.windows();
  std::vector<Place> home_ = witness_.places(windows_);
  std::vector<Place> displaced_;
};

}  // namespace

int main(int argc, char** argv) {
  const Turns turns(argc, argv);  // its first "command" is AWAY
  if (turns.commands.size() < 2) {
    std::cerr << "usage: restore_latency RUNS AWAY COMMAND [EACH...]\n";
    return 64;
  }
  const Layout layout(static_cast<std::uint32_t>(std::stoul(turns.commands[0])));
  const std::vector<std::vector<std::string>> all = {wordsFor(turns.commands[1], 0)};
  const auto each = layout.commands({turns.commands.begin() + 2, turns.commands.end()});
  const auto take = [&](std::size_t subject, std::size_t /*turn*/) -> std::optional<double> {
    if (!layout.scatter()) {
      return std::nullopt;
    }
    const Stopwatch stopwatch;
    for (const auto& words : subject == 0 ? all : each) {
      if (!run(words)) {
        return std::nullopt;
      }
    }
    return layout.waitUntilHome() ? std::optional(stopwatch.now() / static_cast<double>(layout.size())) : std::nullopt;
  };
  return turns.measure(take, each.empty() ? 1 : 2);
}
