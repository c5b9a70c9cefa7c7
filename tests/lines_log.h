#pragma once

#include <string>
#include <vector>

#include "platform/log.h"

namespace tallowin {

/// A log that keeps its lines.
class LinesLog : public Log {
 public:
  void write(Level /*level*/, std::string_view /*category*/, std::string_view message) override {
    lines.emplace_back(message);
  }

  std::vector<std::string> lines;
};

}  // namespace tallowin
