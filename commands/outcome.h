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

namespace exit_status {

/// What the program ends with (sysexits.h where a name of it is given).
inline constexpr int success = 0;
inline constexpr int failure = 1;        ///< nothing was done: no snapshot, no such desktop, no such setting
inline constexpr int notObserved = 2;    ///< what was asked for was not seen to happen
inline constexpr int usage = 64;         ///< EX_USAGE
inline constexpr int badData = 65;       ///< EX_DATAERR
inline constexpr int noInput = 66;       ///< EX_NOINPUT
inline constexpr int unavailable = 69;   ///< EX_UNAVAILABLE
inline constexpr int outputFailed = 74;  ///< EX_IOERR: what was to be printed could not be
inline constexpr int cannotCreate = 73;  ///< EX_CANTCREAT

}  // namespace exit_status

}  // namespace tallowin
