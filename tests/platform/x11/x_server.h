#pragma once

#include <cstdlib>
#include <stdexcept>
#include <string>

#include "tests/platform/child_process.h"

namespace tallowin {

/// A virtual X server of 640 by 480 pixels with nothing running on it, which $DISPLAY names while this exists.
class XServer {
 public:
  XServer() {
    const auto number = process_.readLine();
    if (number.empty()) {
      throw std::runtime_error("Xvfb could not be started");
    }
    setenv("DISPLAY", (":" + number).c_str(), 1);
  }
  ~XServer() { unsetenv("DISPLAY"); }
  XServer(const XServer&) = delete;
  XServer& operator=(const XServer&) = delete;

  void stop() { process_.stop(); }

 private:
  ChildProcess process_{{"Xvfb", "-displayfd", std::to_string(ChildProcess::lineDescriptor), "-screen", "0",
                         "640x480x24", "-nolisten", "tcp", "-noreset"}};
};

}  // namespace tallowin
