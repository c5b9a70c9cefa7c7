#pragma once

#include <string>
#include <vector>

namespace tallowin {

/// What came of handing a request over to the running instance.
struct HandOver {
  enum class Outcome {
    answered,     ///< what it printed has been printed; `status` is what it ended with
    notRunning,   ///< nobody listens, or whoever did has gone without a word
    unreachable,  ///< somebody listens but does not answer, or cannot be trusted; `why` says so in one line
  };
  Outcome outcome = Outcome::notRunning;
  int status = 0;
  std::string why;
};

/// Sends the arguments to the instance that listens in `folder`, and copies what it answers to standard output and
/// standard error until it ends the answer. Whoever does not begin to answer within 5 seconds is unreachable.
[[nodiscard]] HandOver handOver(const std::string& folder, const std::vector<std::string>& arguments);

}  // namespace tallowin
