#pragma once

namespace tallowin::exit_status {

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

}  // namespace tallowin::exit_status
