#pragma once

#include <array>
#include <string>
#include <vector>

#include "commands/commands_under_way.h"
#include "commands/dbus/desktop_methods.h"
#include "core/program_services.h"
#include "core/space_changes.h"

namespace tallowin {

/// The program as an object that other programs call and ask: a method for every command and intent, the Spaces as
/// properties, and word of every change of these. Main thread only.
class DesktopObject {
 public:
  DesktopObject(const ProgramServices& services, SpaceChanges& changes, CommandsUnderWay& underWay,
                const ScriptingBridge& bridge, const OpenURL& openURL, const CommandChannel::Handler& request);
  DesktopObject(const DesktopObject&) = delete;
  DesktopObject& operator=(const DesktopObject&) = delete;

  /// From now on others can find it.
  void offer();

  /// What it consists of.
  [[nodiscard]] ServiceDescription description() const;

 private:
  /// A property, and the value that was told last.
  struct Property {
    std::string name;
    std::string type;
    PropertyList (DesktopObject::*read)() const;
    PropertyList told = nullptr;
  };

  [[nodiscard]] PropertyList spaces() const;
  [[nodiscard]] PropertyList current() const;
  [[nodiscard]] PropertyList names() const;
  [[nodiscard]] PropertyList value(const std::string& property) const;
  void tellChanges();

  const ProgramServices& services_;
  SpaceChanges& spaceChanges_;
  CommandsUnderWay& underWay_;
  const ScriptingBridge& bridge_;
  const std::vector<DesktopMethod> methods_;
  std::array<Property, 3> properties_;
  Subscription changes_;
  Subscription offered_;
};

}  // namespace tallowin
