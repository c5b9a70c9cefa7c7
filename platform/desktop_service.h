#pragma once

#include <expected>
#include <functional>
#include <string>
#include <vector>

#include "platform/property_list.h"
#include "platform/subscription.h"

namespace tallowin {

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
