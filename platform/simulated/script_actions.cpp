#include <cmath>
#include <map>
#include <tuple>
#include <vector>

#include "platform/simulated/scenario_records.h"
#include "platform/simulated/simulated_desktop.h"

namespace tallowin {

// Arguments that only actions have.

using PullTrigger = void (SimulatedUser::*)() const;
void readValue(const ScenarioValue& from, PullTrigger& pull) {
  pull = from.oneOf<PullTrigger>({{"edges", &SimulatedUser::pullTrigger}, {"touch", &SimulatedUser::pullTrigger}});
}

using PermissionMember = bool DesktopState::*;
void readValue(const ScenarioValue& from, PermissionMember& permission) {
  permission = from.oneOf<PermissionMember>({{"accessibility", &DesktopState::accessibilityAllowed},
                                             {"screenRecording", &DesktopState::screenRecordingAllowed}});
}

void readValue(const ScenarioValue& from, WriteStage& stage) {
  stage = from.oneOf<WriteStage>({{"open", WriteStage::open},
                                  {"write", WriteStage::write},
                                  {"flush", WriteStage::flush},
                                  {"rename", WriteStage::rename},
                                  {"folder", WriteStage::folder}});
}

struct ClockJump {
  Duration by = Duration::zero();
};
void readValue(const ScenarioValue& from, ClockJump& jump) {
  constexpr double most = 1e9;
  const auto seconds = from.as<double>();
  if (std::abs(seconds) > most) {
    from.expected("at most a thousand million seconds");
  } else {
    jump.by = Duration{std::llround(seconds * 1e9)};
  }
}

/// A request as bytes, or put together from its parts.
struct HTTPRequest {
  std::string bytes;
};
void readRecord(ScenarioObject& from, HTTPRequest& request) {
  std::optional<std::string> target;
  from.read("target", target);
  if (!target) {
    BytesRecord record;
    readRecord(from, record);
    request.bytes = record.bytes;
    return;
  }
  std::string method = "GET";
  std::map<std::string, std::string> headers;
  std::string body;
  from.read("method", method);
  from.read("headers", headers);
  from.read("body", body);
  request.bytes = method + " " + *target + " HTTP/1.1\r\nHost: localhost\r\n";
  for (const auto& [name, value] : headers) {
    request.bytes.append(name).append(": ").append(value).append("\r\n");
  }
  request.bytes.append("\r\n").append(body);
}

namespace {

using Parts = SimulatedParts;
using ActionReader = std::function<ScriptAction(ScenarioObject&)>;
using Dictionary = std::map<std::string, PropertyList>;

/// In place of an argument's name: the argument is read from the action's members altogether.
constexpr auto members = "";

/// An argument that is required, unless it is optional.
template <typename Value>
Value argument(ScenarioObject& from, std::string_view name) {
  Value value{};
  if constexpr (requires { readRecord(from, value); }) {
    readRecord(from, value);
  } else if constexpr (requires { value.has_value(); }) {
    from.read(name, value);
  } else {
    from.require(name, value);
  }
  return value;
}

template <typename... Values>
ActionReader actionReader(std::vector<const char*> names, void (*perform)(Parts&, Values...)) {
  return [names = std::move(names), perform](ScenarioObject& from) -> ScriptAction {
    [[maybe_unused]] auto name = names.begin();
    const std::tuple<std::remove_cvref_t<Values>...> values{argument<std::remove_cvref_t<Values>>(from, *name++)...};
    return [perform, values](SimulatedDesktop& desktop) {
      std::apply([&](const auto&... each) { perform(desktop.parts(), each...); }, values);
    };
  };
}

/// An action with arguments of these names, in the order in which `perform` takes them.
template <typename Perform>
ActionReader act(std::vector<const char*> names, Perform perform) {
  return actionReader(std::move(names), +perform);
}

/// Does something to a window, if there is one by then.
template <typename Change>
void changeWindow(Parts& desktop, WindowNumber number, Change change) {
  if (auto* const window = desktop.state.window(number)) {
    change(*window);
  }
}

template <NotificationName name>
void post(Parts& desktop) {
  desktop.workspaceNotifications.post({name, std::nullopt});
}

using Actions = std::map<std::string_view, ActionReader>;

Actions windowActions() {
  return {
      {"activateApplication", act({"pid"}, [](Parts& desktop, ProcessID pid) { desktop.workspace.activate(pid); })},
      {"closeWindow", act({"number"},
                          [](Parts& desktop, WindowNumber number) {
                            std::erase_if(desktop.state.windows,
                                          [&](const auto& window) { return window.number == number; });
                          })},
      {"hideApplication", act({"pid"}, [](Parts& desktop, ProcessID pid) { desktop.workspace.setHidden(pid, true); })},
      {"launchApplication", act({members, "pid"},
                                [](Parts& desktop, const SimulatedApplication& application, ProcessID pid) {
                                  desktop.workspace.launch(application);
                                  if (application.isActive) {
                                    desktop.workspace.activate(pid);
                                  }
                                })},
      {"minimizeWindow", act({"number", "minimized"},
                             [](Parts& desktop, WindowNumber number, std::optional<bool> minimized) {
                               changeWindow(desktop, number,
                                            [&](auto& window) { window.minimized = minimized.value_or(true); });
                             })},
      {"moveWindow", act({"number", "frame", members},
                         [](Parts& desktop, WindowNumber number, std::optional<CGRect> frame, const SpacesRecord& to) {
                           changeWindow(desktop, number, [&](auto& window) {
                             window.frame = frame.value_or(window.frame);
                             window.spaces = to.spaces.value_or(window.spaces);
                           });
                         })},
      {"openWindow", act({members},
                         [](Parts& desktop, const WindowRecord& opened) {
                           auto& windows = desktop.state.windows;
                           if (desktop.state.window(opened.window.number) == nullptr) {
                             windows.insert(windows.begin(), opened.placedIn(desktop.state));
                           }
                         })},
      {"quitApplication", act({"pid"}, [](Parts& desktop, ProcessID pid) { desktop.workspace.quit(pid); })},
      {"retitleWindow", act({"number", "title"},
                            [](Parts& desktop, WindowNumber number, const std::string& title) {
                              changeWindow(desktop, number, [&](auto& window) { window.title = title; });
                            })},
      {"setResponseTime", act({"pid", "responseTime"},
                              [](Parts& desktop, ProcessID pid, Nullable<Duration> time) {
                                if (auto* const application = desktop.state.application(pid)) {
                                  application->responseTime = time.value;
                                }
                              })},
      {"unhideApplication",
       act({"pid"}, [](Parts& desktop, ProcessID pid) { desktop.workspace.setHidden(pid, false); })},
  };
}

Actions spaceActions() {
  return {
      {"addSpace",
       act({"display"},
           [](Parts& desktop, const std::optional<std::string>& display) { desktop.spaces.addByOthers(display); })},
      {"bounceDock", act({"count", "after"},
                         [](Parts& desktop, std::uint16_t count, std::optional<Duration> after) {
                           desktop.spaces.bounceNext(count, after.value_or(ScenarioDock{}.bounceAfter));
                         })},
      {"connectDisplay",
       act({members}, [](Parts& desktop, const DisplayRecord& record) { desktop.connectDisplay(record.display); })},
      {"disconnectDisplay", act({"id"}, [](Parts& desktop, DisplayID display) { desktop.disconnectDisplay(display); })},
      {"pressSymbolicHotKey", act({"hotKey"}, [](Parts& desktop, int hotKey) { desktop.pressSymbolicHotKey(hotKey); })},
      {"removeSpace",
       act({"space"}, [](Parts& desktop, ManagedSpaceID space) { desktop.spaces.removeByOthers(space); })},
      {"setDesktopCount",
       act({"count"}, [](Parts& desktop, std::uint16_t count) { desktop.spaces.setDesktopCount(count); })},
      {"setManagedDisplaySpaces",
       act({"list"}, [](Parts& desktop, const PropertyList& list) { desktop.spaces.replaceList(list); })},
      {"setMenuBarDisplay",
       act({"display"},
           [](Parts& desktop, const Nullable<std::string>& display) { desktop.state.menuBarDisplay = display.value; })},
      {"setRequests",
       act({members}, [](Parts& desktop, const RequestRecord& record) { record.applyTo(desktop.state.requests); })},
      {"setSymbolicHotKey", act({"binding", "hotKey"},
                                [](Parts& desktop, const Nullable<SymbolicHotKey>& binding, int hotKey) {
                                  desktop.state.hotKeys[hotKey] = binding.value.value_or(SymbolicHotKey());
                                })},
      {"switchSpace", act({"space"}, [](Parts& desktop, ManagedSpaceID space) { desktop.spaces.switchNow(space); })},
  };
}

Actions fileActions() {
  return {
      {"corruptFile", act({"path"}, [](Parts& desktop, const PathRecord& file) { desktop.files.corrupt(file.path); })},
      {"deleteFile", act({"path"}, [](Parts& desktop, const PathRecord& file) { desktop.files.take(file.path); })},
      {"failDisk", act({"stage"}, [](Parts& desktop, WriteStage stage) { desktop.files.failAt(stage); })},
      {"fillDisk", act({"room"}, [](Parts& desktop,
                                    std::optional<std::uint32_t> room) { desktop.files.setRoom(room.value_or(0)); })},
      {"freeDisk", act({},
                       [](Parts& desktop) {
                         desktop.files.setRoom(std::nullopt);
                         desktop.files.failAt(std::nullopt);
                       })},
      {"makeUnwritable",
       act({"path"}, [](Parts& desktop, const PathRecord& file) { desktop.files.setUnwritable(file.path, true); })},
      {"makeWritable",
       act({"path"}, [](Parts& desktop, const PathRecord& file) { desktop.files.setUnwritable(file.path, false); })},
      {"removePreference",
       act({"key"}, [](Parts& desktop, const std::string& key) { desktop.preferencesFile.remove(key); })},
      {"renamePlist", act({}, [](Parts& desktop) { desktop.files.replace(Parts::spacesFile(), ""); })},
      {"setPreference",
       act({"key", "value"}, [](Parts& desktop, const std::string& key,
                                const PropertyList& value) { desktop.preferencesFile.set(key, value); })},
      {"writeFile",
       act({"replace", "path", members},
           [](Parts& desktop, std::optional<bool> replace, const PathRecord& file, const BytesRecord& content) {
             const auto write = replace == true ? &SimulatedFiles::replace : &SimulatedFiles::overwrite;
             (desktop.files.*write)(file.path, content.bytes);
           })},
  };
}

Actions machineActions() {
  return {
      {"jumpClock", act({"by"}, [](Parts& desktop, ClockJump jump) { desktop.clock.jumpWallClock(jump.by); })},
      {"lockScreen", act({}, [](Parts& desktop) { desktop.state.screenLocked = true; })},
      {"quit", [](ScenarioObject&) -> ScriptAction { return [](SimulatedDesktop& desktop) { desktop.onQuit(0); }; }},
      {"setGlobalPreference",
       act({"key", "value"}, [](Parts& desktop, const std::string& key,
                                const PropertyList& value) { desktop.state.globalPreferences[key] = value; })},
      {"setPermission", act({"permission", "allowed"}, [](Parts& desktop, PermissionMember permission,
                                                          bool allowed) { desktop.state.*permission = allowed; })},
      {"sleepScreens", act({}, post<NotificationName::NSWorkspaceScreensDidSleepNotification>)},
      {"unlockScreen", act({}, [](Parts& desktop) { desktop.state.screenLocked = false; })},
      {"wake", act({}, post<NotificationName::NSWorkspaceDidWakeNotification>)},
      {"wakeScreens", act({}, post<NotificationName::NSWorkspaceScreensDidWakeNotification>)},
  };
}

Actions userActions() {
  return {
      {"answerAlert", act({"button"}, [](Parts& desktop,
                                         const Nullable<std::string>& button) { desktop.alerts.press(button.value); })},
      {"answerNoteDialog",
       act({"text"},
           [](Parts& desktop, const Nullable<std::string>& text) { desktop.user.answerNoteDialog(text.value); })},
      {"answerRenameDialog", act({"name", "symbol", "color"},
                                 [](Parts& desktop, const Nullable<std::string>& name,
                                    const std::optional<std::string>& symbol, const std::optional<std::string>& color) {
                                   desktop.user.answerRenameDialog(
                                       name.value ? std::optional(GivenName{*name.value, symbol, color})
                                                  : std::nullopt);
                                 })},
      {"chooseInMenu",
       act({"path"}, [](Parts& desktop, const std::vector<std::string>& path) { desktop.user.chooseInMenu(path); })},
      {"clickDock", act({}, [](Parts& desktop) { desktop.user.clickDock(); })},
      {"lookAtMenu", act({}, [](Parts& desktop) { desktop.user.lookAtMenu(); })},
      {"movePointer", act({"to"}, [](Parts& desktop, CGPoint to) { desktop.events.movePointer(to); })},
      {"pressKey", act({"key", "modifiers"},
                       [](Parts& desktop, KeyRecord key, std::optional<std::uint64_t> modifiers) {
                         desktop.pressKey(key.code, modifiers.value_or(0));
                       })},
      {"pressMouse", act({}, [](Parts& desktop) { desktop.events.pressLeftButton(); })},
      {"pullTrigger", act({"trigger"}, [](Parts& desktop, PullTrigger pull) { (desktop.user.*pull)(); })},
      {"releaseMouse", act({}, [](Parts& desktop) { desktop.events.releaseLeftButton(); })},
      {"scrollOverItem", act({"eighths"},
                             [](Parts& desktop, int eighths) {
                               desktop.user.scroll(eighths,
                                                   std::chrono::duration_cast<std::chrono::milliseconds>(
                                                       std::chrono::nanoseconds(desktop.clock.machAbsoluteTime())));
                             })},
      {"touch", act({"contacts"},
                    [](Parts& desktop, const std::vector<CGPoint>& contacts) { desktop.functions.touch(contacts); })},
  };
}

Actions callerActions() {
  static constexpr std::uint16_t standardPort = 57301;
  return {
      {"callDBus",
       act({"arguments", "member"},
           [](Parts& desktop, const std::optional<std::vector<PropertyList>>& arguments, const std::string& member) {
             desktop.desktopService.call(member, arguments.value_or(std::vector<PropertyList>()));
           })},
      {"httpRequest", act({"port", members},
                          [](Parts& desktop, std::optional<std::uint16_t> port, const HTTPRequest& request) {
                            desktop.listeners.request(port.value_or(standardPort), request.bytes);
                          })},
      {"interruptCommand",
       act({"caller"}, [](Parts& desktop, std::int32_t caller) { desktop.commandChannel.interrupt(caller); })},
      {"listenToDBus", act({}, [](Parts& desktop) { desktop.desktopService.listen(); })},
      {"openURL", act({"url"}, [](Parts& desktop, const std::string& url) { desktop.urlEvents.open(url); })},
      {"runCommand",
       act({"arguments"},
           [](Parts& desktop, const std::vector<std::string>& words) { desktop.commandChannel.run(words); })},
      {"runIntent", act({"intent", "parameters"},
                        [](Parts& desktop, const std::string& intent, const std::optional<Dictionary>& parameters) {
                          desktop.scriptEvents.run(IntentEvent{intent, parameters.value_or(Dictionary())});
                        })},
      {"runScriptCommand",
       act({"class", "directParameter", "arguments"},
           [](Parts& desktop, const std::string& commandClass, const std::optional<PropertyList>& directParameter,
              const std::optional<Dictionary>& arguments) {
             desktop.scriptEvents.run(
                 ScriptCommandEvent{commandClass, directParameter.value_or(nullptr), arguments.value_or(Dictionary())});
           })},
      {"speak", act({"phrase"}, [](Parts& desktop, const std::string& phrase) { desktop.scriptEvents.speak(phrase); })},
  };
}

}  // namespace

std::optional<ScriptAction> readScriptAction(std::string_view name, ScenarioObject& from) {
  static const std::vector<Actions> groups = {windowActions(),  spaceActions(), fileActions(),
                                              machineActions(), userActions(),  callerActions()};
  for (const auto& group : groups) {
    if (const auto found = group.find(name); found != group.end()) {
      return found->second(from);
    }
  }
  return std::nullopt;
}

}  // namespace tallowin
