#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "platform/channel/channel_protocol.h"

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
  channel::Answerer answerer;  ///< who answered
};

/// How an answer is taken.
struct HandOverTerms {
  int patience = 5000;  ///< whoever does not begin to answer within so many milliseconds is unreachable
  bool silent = false;  ///< what is answered is dropped
};

/// Sends the arguments to the instance that listens in `folder`, and copies what it answers to standard output and
/// standard error until it ends the answer.
[[nodiscard]] HandOver handOver(const std::string& folder, const std::vector<std::string>& arguments,
                                const HandOverTerms& terms = {});

/// What a user should know of who answered, as lines for standard error, seen from a program of version `ownVersion` on
/// the display `ownDisplay`, which may be null: it is an older one, or works on another display.
[[nodiscard]] std::string remarksOn(const channel::Answerer& answerer, std::string_view ownVersion,
                                    const char* ownDisplay);

}  // namespace tallowin
