#pragma once

#include <cstddef>
#include <cstdint>
#include <expected>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "platform/property_list.h"
#include "platform/subscription.h"

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

  /// Has `gone` called once, in a turn of the main queue of its own, when the caller has gone before it was answered to
  /// the end; where that can be noticed without a word to it.
  virtual void whenGone(std::function<void()> gone) { static_cast<void>(gone); }
};

/// Requests from other programs of the user's. Main thread only.
class CommandChannel {
 public:
  using Handler = std::function<void(const Request&, std::unique_ptr<Caller>)>;

  virtual ~CommandChannel() = default;

  /// Makes `handler` the one receiver of requests; those that come before wait. Null stops taking them.
  virtual void setHandler(Handler handler) = 0;
};

/// URLs of the program's own scheme that the system hands over (the "get URL" Apple event). Main thread only.
class URLEvents {
 public:
  virtual ~URLEvents() = default;

  /// Makes `handler` the one receiver of the texts of such events; a later call replaces it.
  virtual void setHandler(std::function<void(const std::string& text)> handler) = 0;
};

/// A command of the program's scripting dictionary, as a script sends it.
struct ScriptCommandEvent {
  std::string commandClass;                         ///< the class that the dictionary maps the script's term to
  PropertyList directParameter;                     ///< null for none
  PropertyList arguments = PropertyList::object();  ///< by their keys
};

/// An intent, as the system's shortcuts run it.
struct IntentEvent {
  std::string intent;                                ///< the name of its type
  PropertyList parameters = PropertyList::object();  ///< by their names
};

/// Commands from scripts and from the system's shortcuts. Main thread only.
class ScriptEvents {
 public:
  /// What comes back: the intent's value, null for none; or one line that says why there is no such command, intent or
  /// phrase.
  using Result = std::expected<PropertyList, std::string>;
  /// The program's side: one for a script's command, one for an intent.
  struct Handlers {
    std::function<Result(const ScriptCommandEvent&)> command;
    std::function<Result(const IntentEvent&)> intent;
    /// A phrase that the user has spoken to the program.
    std::function<Result(const std::string&)> phrase;
  };

  virtual ~ScriptEvents() = default;

  /// Makes these the receivers; a later call replaces them, and empty ones receive nothing.
  virtual void setHandlers(Handlers handlers) = 0;
};

/// The most bytes that are taken as a request.
inline constexpr std::size_t largestTCPRequest = 16384;

/// Answers one request: all bytes that came with the first read in, all bytes of the reply out. An empty reply closes
/// the connection without one. Runs on the listener's own thread.
using TCPResponder = std::function<std::string(std::string request)>;

/// A running listener. Letting go of it closes it: the port is free and the responder is not called any more when that
/// returns. Replies that are on their way then still arrive; who has sent nothing yet gets none.
class TCPListener {
 public:
  virtual ~TCPListener() = default;
};

/// Serves one-shot requests on the loopback interface (Network framework, NWListener). Main thread only. No client can
/// make it wait: one that neither sends nor takes anything for 5 seconds is dropped, and no more than 256 are served at
/// a time, while others wait for their turn.
class TCPListeners {
 public:
  virtual ~TCPListeners() = default;

  /// Listens on 127.0.0.1 and, where there is IPv6, ::1, and on nothing else. Each connection is read once, answered
  /// and closed. The error is the system's description of why the port could not be opened.
  [[nodiscard]] virtual std::expected<std::unique_ptr<TCPListener>, std::string> listen(std::uint16_t port,
                                                                                        TCPResponder responder) = 0;
};

/// An object that other programs of the user's find by name and call, with its methods and properties.
///
/// Types are D-Bus signatures. Arguments are "s", "b" or "as"; "av" and "a{sv}" are taken too, but read as empty.
/// Results and properties are made of "s", "b", "x", lists, structures of these, and "a{sv}", whose values are
/// booleans, integers, reals, texts or lists of texts.
struct ServiceDescription {
  /// What a method takes or answers.
  struct Argument {
    std::string type;
    std::string name;
  };
  /// What can be called.
  struct Method {
    std::string name;
    std::vector<Argument> in;
    std::vector<Argument> out;  ///< if there are several, the result is the list of them
  };
  /// What can be read, and not written. Every change is told.
  struct Property {
    std::string name;
    std::string type;
  };
  /// Methods and properties under one name.
  struct Interface {
    std::string name;
    std::vector<Method> methods;
    std::vector<Property> properties;
  };

  std::string name;  ///< by which the program is found
  std::string path;  ///< of the object
  std::vector<Interface> interfaces;
};

/// Why a call is refused.
struct ServiceError {
  std::string name;     ///< for programs, such as "org.freedesktop.DBus.Error.InvalidArgs"
  std::string message;  ///< one line for people
  bool operator==(const ServiceError&) const = default;
};

/// Lets other programs of the user's call this one (on Linux by D-Bus). Main thread only; nothing ever blocks.
class DesktopService {
 public:
  /// What a call answers.
  using Result = std::expected<PropertyList, ServiceError>;
  /// Takes that answer, once; later ones are ignored.
  using Reply = std::function<void(const Result&)>;
  /// The program's side.
  struct Handlers {
    /// Does what a method is called for, with the list of its arguments. `reply` is called then or later; with null for
    /// methods without a result.
    std::function<void(const std::string& interface, const std::string& method, const PropertyList& arguments,
                       const Reply& reply)>
        call;
    /// The value of a property at this moment. Must change nothing.
    std::function<PropertyList(const std::string& interface, const std::string& property)> property;
    /// Runs `work`, which reads properties for somebody, when they show what has been called for before: then or later.
    std::function<void(std::function<void()> work)> whenSettled;
  };

  virtual ~DesktopService() = default;

  /// Offers the one object of the program, soon, until the answer is let go of. That it cannot be offered is said in
  /// the log; the program runs all the same.
  virtual Subscription offer(ServiceDescription description, Handlers handlers) = 0;

  /// Tells whoever listens the new values of properties.
  virtual void tellChanged(const std::string& interface, const std::vector<std::string>& properties) = 0;
};

}  // namespace tallowin
