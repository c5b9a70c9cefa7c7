#pragma once

#include "commands/dbus/desktop_object.h"
#include "commands/scripting/scripting_bridge.h"
#include "platform/script_events.h"

namespace tallowin {

/// The ways for scripts, shortcuts and other programs to give commands and to ask for the Spaces. Main thread only.
class ScriptingChannels {
 public:
  struct Services {
    ScriptEvents& scriptEvents;
    DesktopService& desktopService;
    SpaceWatcher& watcher;
    SpaceStore& store;
    SpaceChanges& changes;
    OpenURL openURL;
    CommandChannel::Handler request;
    CommandsUnderWay& underWay;
    const Folders& folders;
  };

  explicit ScriptingChannels(Services services);
  ~ScriptingChannels();
  ScriptingChannels(const ScriptingChannels&) = delete;
  ScriptingChannels& operator=(const ScriptingChannels&) = delete;

  /// Opens them; `handler` receives every command.
  void open(std::function<void(const SpaceCommand&)> handler);

 private:
  [[nodiscard]] std::optional<Space> current() const;

  const Services services_;
  ScriptingBridge bridge_;
  DesktopObject object_;
};

}  // namespace tallowin
