#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace tallowin {

/// What another program of the user's asks for: its arguments, and the folder that relative paths among them start
/// from.
struct Request {
  std::vector<std::string> arguments;
  std::string workingDirectory;
  bool operator==(const Request&) const = default;
};

/// Whoever sent a request, as long as the answer goes on: a program in a terminal, a bar, a script. Letting go of it
/// without exit() tells that program that it was not answered. Main thread only; nothing ever blocks.
class Caller {
 public:
  virtual ~Caller() = default;

  /// Prints text on the caller's standard output or standard error, exactly as given. False when the caller has gone,
  /// or did not read for so long that it was dropped; later text has no effect then.
  virtual bool out(std::string_view text) = 0;
  virtual bool err(std::string_view text) = 0;

  /// Ends the caller's program with a status from 0 to 255, after what has been printed.
  virtual void exit(int status) = 0;

  /// The same, but not before this process has stopped taking requests, so that whoever waits for the end can start the
  /// next one at once.
  virtual void exitAtEnd(int status) = 0;
};

/// Requests from other programs of the user's. Main thread only.
class CommandChannel {
 public:
  using Handler = std::function<void(const Request&, std::unique_ptr<Caller>)>;

  virtual ~CommandChannel() = default;

  /// Makes `handler` the one receiver of requests; those that come before wait. Null stops taking them.
  virtual void setHandler(Handler handler) = 0;
};

}  // namespace tallowin
