#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "commands/command_url.h"
#include "commands/scripting/scripting_bridge.h"
#include "commands/space_command.h"
#include "platform/property_list.h"
#include "platform/ways_in.h"

namespace tallowin {

/// The interface with a method for every command and intent.
inline constexpr auto commandInterface = "com.quorvex.Tallowin";
/// The Desktop Entry Specification's interface of applications that are started by D-Bus.
inline constexpr auto applicationInterface = "org.freedesktop.Application";

/// A method that other programs can call, and what it does.
struct DesktopMethod {
  std::string interface;
  ServiceDescription::Method declared;
  /// For arguments that have the declared types.
  std::function<void(const PropertyList& arguments, const DesktopService::Reply& reply)> run;
};

/// Performs a URL, or answers why not.
using OpenURL = std::function<std::optional<URLFault>(const std::string& url)>;

/// All methods. `request` does what words ask for; relative paths among them start from `folder`. The bridge must
/// outlive them.
[[nodiscard]] std::vector<DesktopMethod> desktopMethods(const ScriptingBridge& bridge, const OpenURL& openURL,
                                                        const CommandChannel::Handler& request,
                                                        const std::string& folder);

/// Runs the method of this name. Arguments that have other types than it declares are refused.
void run(const std::vector<DesktopMethod>& methods, const std::string& interface, const std::string& name,
         const PropertyList& arguments, const DesktopService::Reply& reply);

}  // namespace tallowin
