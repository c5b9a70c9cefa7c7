#pragma once

#include <functional>
#include <nlohmann/json.hpp>
#include <string>
#include <string_view>

#include "platform/simulated/virtual_time.h"

namespace tallowin {

/// What the program did to the simulated platform, one JSON object a line, in order. Main thread only.
class Journal {
 public:
  /// Receives one line at a time, without its line feed.
  using Sink = std::function<void(std::string_view line)>;

  Journal(const SimulatedClock& clock, Sink sink) : clock_(clock), sink_(std::move(sink)) {}

  /// Writes {"t": seconds since the start with three digits after the point, "op": `op`, then `arguments` in order}.
  /// `arguments` is an object, or null for none. Text that is no UTF-8 is written with replacement characters.
  void record(std::string_view op, const nlohmann::ordered_json& arguments = {});

 private:
  const SimulatedClock& clock_;
  const Sink sink_;
};

}  // namespace tallowin
