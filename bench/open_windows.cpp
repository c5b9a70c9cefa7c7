// Opens windows on the server that $DISPLAY names, prints a line when so many are managed, and keeps them until nobody
// reads its output any more.
//
// open_windows COUNT

#include <chrono>
#include <cstdlib>
#include <iostream>
#include <poll.h>
#include <thread>
#include <unistd.h>

#include "bench/window_witness.h"

int main(int argc, char** argv) {
  const tallowin::bench::WindowWitness witness;
  if (argc != 2 || !witness.connected()) {
    std::cerr << "usage: open_windows COUNT, on an X server\n";
    return 64;
  }
  const std::size_t count = std::strtoul(argv[1], nullptr, 10);
  int number = 0;
  for (auto open = witness.windows().size(); open < count; ++open) {
    witness.open(++number);
  }
  const auto end = std::chrono::steady_clock::now() + std::chrono::minutes(2);
  while (witness.windows().size() < count) {
    if (std::chrono::steady_clock::now() > end) {
      std::cerr << "open_windows: the window manager does not manage " << count << " windows\n";
      return EXIT_FAILURE;
    }
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
  }
  std::cout << count << " windows" << std::endl;
  pollfd output{STDOUT_FILENO, 0, 0};
  ::poll(&output, 1, -1);
  return EXIT_SUCCESS;
}
