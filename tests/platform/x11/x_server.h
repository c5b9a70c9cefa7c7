#pragma once

#include <cstdlib>
#include <gtest/gtest.h>
#include <string>

#include "tests/platform/child_process.h"

namespace tallowin {

/// A virtual X server of 640 by 480 pixels with nothing running on it, which $DISPLAY names while this exists.
class XServer {
 public:
  XServer() {
    const auto number = process_.readLine();
    display_ = number.empty() ? "" : ":" + number;
    setenv("DISPLAY", display_.c_str(), 1);
  }

  ~XServer() { unsetenv("DISPLAY"); }
  XServer(const XServer&) = delete;
  XServer& operator=(const XServer&) = delete;

  /// Whether there is a server: Xvfb may not be installed.
  [[nodiscard]] bool running() const { return !display_.empty(); }

  void stop() { process_.stop(); }

 private:
  ChildProcess process_{{"Xvfb", "-displayfd", std::to_string(ChildProcess::lineDescriptor), "-screen", "0",
                         "640x480x24", "-nolisten", "tcp", "-noreset"}};
  std::string display_;
};

/// A test that needs a server.
class XServerTest : public testing::Test {
 protected:
  void SetUp() override {
    if (!server_.running()) {
      GTEST_SKIP() << "Xvfb could not be started";
    }
  }

  XServer server_;
};

}  // namespace tallowin
