#pragma once

#include <functional>
#include <string>
#include <string_view>

namespace tallowin {

/// What became of a command.
struct Outcome {
  enum class Kind {
    done,     ///< it has happened
    refused,  ///< nothing was done
    notSeen,  ///< it was asked for, and has not been seen to happen
  };

  Kind kind = Kind::done;
  std::string sentence;  ///< one for people that says why not; empty when done
  bool operator==(const Outcome&) const = default;

  static Outcome done() { return {}; }
  static Outcome refused(std::string_view why) { return {Kind::refused, std::string(why)}; }
  static Outcome notSeen() { return {Kind::notSeen, "Asked for, but not seen to happen yet."}; }
};

/// Told what became of one command.
using OutcomeHandler = std::function<void(const Outcome&)>;

}  // namespace tallowin
