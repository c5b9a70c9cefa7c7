#include "platform/simulated/script_actions.h"

#include <algorithm>
#include <cmath>
#include <tuple>

#include "platform/simulated/scenario_records.h"
#include "platform/simulated/simulated_desktop.h"

namespace tallowin {

namespace {

using Arguments = ScenarioObject;
using Parts = SimulatedParts;
using Reader = std::function<ScriptAction(Arguments&)>;

/// An action as most of them are: something done to the desktop's parts.
template <typename Action>
ScriptAction onParts(Action action) {
  return [action = std::move(action)](SimulatedDesktop& desktop) { action(desktop.parts()); };
}

/// A key, a path, any JSON, and what may be null, as arguments.
struct KeyArgument {
  VirtualKeyCode code = 0;
};
struct PathArgument {
  std::string path;
};
template <typename Value>
struct Nullable {
  std::optional<Value> value;
};

template <typename Value>
void readArgument(const ScenarioValue& from, Value& value) {
  if constexpr (std::is_same_v<Value, KeyArgument>) {
    value.code = readKey(from);
  } else if constexpr (std::is_same_v<Value, PathArgument>) {
    value.path = readPath(from);
  } else if constexpr (std::is_same_v<Value, PropertyList>) {
    value = from.json();
  } else if constexpr (requires { value.value; }) {
    if (!from.isNull()) {
      from.into(value.value);
    }
  } else {
    from.into(value);
  }
}

/// An argument that is required, unless it is optional.
template <typename Value>
Value argument(Arguments& arguments, std::string_view name) {
  Value value{};
  if constexpr (requires { value.has_value(); }) {
    if (const auto member = arguments.find(name)) {
      readArgument(*member, value.emplace());
    }
  } else {
    readArgument(arguments.require(name), value);
  }
  return value;
}

/// An action with arguments of these names, in the order in which `perform` takes them.
template <typename... Values, typename... Names>
Reader act(void (*perform)(Parts&, Values...), Names... names) {
  return [=](Arguments& arguments) -> ScriptAction {
    const std::tuple<std::remove_cvref_t<Values>...> values{argument<std::remove_cvref_t<Values>>(arguments, names)...};
    return onParts([perform, values](Parts& desktop) {
      std::apply([&](const auto&... each) { perform(desktop, each...); }, values);
    });
  };
}

/// An action on files of these functions of theirs.
template <auto change, auto... fixed>
void onFile(Parts& desktop, PathArgument file) {
  (desktop.files.*change)(file.path, fixed...);
}

template <NotificationName name>
void post(Parts& desktop) {
  desktop.workspaceNotifications.post({name, std::nullopt});
}

/// Does something to a window, if there is one by then.
template <typename Change>
void onWindow(Parts& desktop, WindowNumber number, Change change) {
  if (auto* const window = desktop.state.window(number)) {
    change(*window);
  }
}

void addSpace(Parts& desktop, std::optional<std::string> display) {
  const auto rows = desktop.spaces.displays();
  if (const auto places = desktop.spaces.places()) {
    desktop.spaces.setDesktopCount(places->size() + 1);
  } else if (display || !rows.empty()) {
    desktop.spaces.addDesktop(display.value_or(rows.empty() ? "" : rows.front().id));
  }
}

void removeSpace(Parts& desktop, ManagedSpaceID space) {
  if (const auto places = desktop.spaces.places()) {
    desktop.spaces.setDesktopCount(places->size() - 1);
  } else {
    desktop.spaces.removeDesktop(space);
  }
}

ScriptAction writeFile(Arguments& arguments) {
  const auto change = argument<std::optional<bool>>(arguments, "replace").value_or(false) ? &SimulatedFiles::replace
                                                                                          : &SimulatedFiles::overwrite;
  return onParts([file = argument<PathArgument>(arguments, "path"), bytes = readBytes(arguments),
                  change](Parts& desktop) { (desktop.files.*change)(file.path, bytes); });
}

ScriptAction failDisk(Arguments& arguments) {
  static constexpr std::pair<std::string_view, WriteStage> stages[] = {{"open", WriteStage::open},
                                                                       {"write", WriteStage::write},
                                                                       {"flush", WriteStage::flush},
                                                                       {"rename", WriteStage::rename},
                                                                       {"folder", WriteStage::folder}};
  return onParts([stage = arguments.require("stage").oneOf(stages)](Parts& desktop) { desktop.files.failAt(stage); });
}

void freeDisk(Parts& desktop) {
  desktop.files.setRoom(std::nullopt);
  desktop.files.failAt(std::nullopt);
}

ScriptAction setPermission(Arguments& arguments) {
  static constexpr std::pair<std::string_view, bool DesktopState::*> permissions[] = {
      {"accessibility", &DesktopState::accessibilityAllowed},
      {"screenRecording", &DesktopState::screenRecordingAllowed}};
  return onParts(
      [permission = arguments.require("permission").oneOf(permissions),
       allowed = argument<bool>(arguments, "allowed")](Parts& desktop) { desktop.state.*permission = allowed; });
}

ScriptAction pullTrigger(Arguments& arguments) {
  static constexpr std::pair<std::string_view, SimulatedTrigger SimulatedUser::*> triggers[] = {
      {"edges", &SimulatedUser::edges}, {"touch", &SimulatedUser::touch}};
  return onParts(
      [trigger = arguments.require("trigger").oneOf(triggers)](Parts& desktop) { (desktop.user.*trigger).pull(); });
}

ScriptAction setSymbolicHotKey(Arguments& arguments) {
  const auto binding = arguments.require("binding");
  HotKeyRecord record;
  if (!binding.isNull()) {
    ScenarioObject object(binding);
    record = readHotKey(object);
  }
  return onParts([hotKey = argument<int>(arguments, "hotKey"), record](Parts& desktop) {
    record.applyTo(desktop.state.hotKeys, hotKey);
  });
}

ScriptAction jumpClock(Arguments& arguments) {
  const auto by = arguments.require("by");
  constexpr double most = 1e9;
  if (std::abs(by.number()) > most) {
    by.expected("at most a thousand million seconds");
    return [](SimulatedDesktop&) {};
  }
  return onParts(
      [jump = Duration{std::llround(by.number() * 1e9)}](Parts& desktop) { desktop.clock.jumpWallClock(jump); });
}

/// The request as bytes, or put together from its parts.
std::string readHTTPRequest(Arguments& arguments) {
  const auto target = argument<std::optional<std::string>>(arguments, "target");
  if (!target) {
    return readBytes(arguments);
  }
  const auto method = argument<std::optional<std::string>>(arguments, "method").value_or("GET");
  std::string request = method + " " + *target + " HTTP/1.1\r\nHost: localhost\r\n";
  if (const auto headers = arguments.find("headers")) {
    for (const auto& [name, value] : headers->entries()) {
      request.append(name).append(": ").append(value.text()).append("\r\n");
    }
  }
  return request + "\r\n" + argument<std::optional<std::string>>(arguments, "body").value_or("");
}

ScriptAction httpRequest(Arguments& arguments) {
  constexpr std::uint16_t standardPort = 57301;
  return onParts([port = argument<std::optional<std::uint16_t>>(arguments, "port").value_or(standardPort),
                  request = readHTTPRequest(arguments)](Parts& desktop) { desktop.listeners.request(port, request); });
}

/// The member, an object whose names are free; empty when it is not there.
PropertyList findDictionary(Arguments& arguments, std::string_view name) {
  auto dictionary = PropertyList::object();
  if (const auto member = arguments.find(name)) {
    for (const auto& [key, value] : member->entries()) {
      dictionary[key] = value.json();
    }
  }
  return dictionary;
}

ScriptAction runScriptCommand(Arguments& arguments) {
  const ScriptCommandEvent event{argument<std::string>(arguments, "class"),
                                 argument<std::optional<PropertyList>>(arguments, "directParameter").value_or(nullptr),
                                 findDictionary(arguments, "arguments")};
  return onParts([event](Parts& desktop) { desktop.scriptEvents.run(event); });
}

ScriptAction runIntent(Arguments& arguments) {
  const IntentEvent event{argument<std::string>(arguments, "intent"), findDictionary(arguments, "parameters")};
  return onParts([event](Parts& desktop) { desktop.scriptEvents.run(event); });
}

ScriptAction callDBus(Arguments& arguments) {
  auto values = PropertyList::array();
  if (const auto given = arguments.find("arguments")) {
    for (const auto& value : given->list()) {
      values.push_back(value.json());
    }
  }
  return onParts([member = argument<std::string>(arguments, "member"), values](Parts& desktop) {
    desktop.desktopService.call(member, values);
  });
}

ScriptAction launchApplication(Arguments& arguments) {
  auto application = readApplication(arguments);
  application.pid = argument<ProcessID>(arguments, "pid");
  return onParts([application](Parts& desktop) {
    desktop.workspace.launch(application);
    if (application.isActive) {
      desktop.workspace.activate(*application.pid);
    }
  });
}

ScriptAction setResponseTime(Arguments& arguments) {
  return onParts([pid = argument<ProcessID>(arguments, "pid"),
                  time = readResponseTime(arguments.require("responseTime"))](Parts& desktop) {
    if (auto* const application = desktop.state.application(pid)) {
      application->responseTime = time;
    }
  });
}

ScriptAction openWindow(Arguments& arguments) {
  return onParts([record = readWindow(arguments)](Parts& desktop) {
    if (desktop.state.window(record.window.number) == nullptr) {
      desktop.state.windows.insert(desktop.state.windows.begin(), record.placedIn(desktop.state));
    }
  });
}

ScriptAction moveWindow(Arguments& arguments) {
  return onParts([number = argument<WindowNumber>(arguments, "number"),
                  frame = argument<std::optional<CGRect>>(arguments, "frame"),
                  spaces = readSpaces(arguments)](Parts& desktop) {
    onWindow(desktop, number, [&](SimulatedWindow& window) {
      window.frame = frame.value_or(window.frame);
      window.spaces = spaces.value_or(window.spaces);
    });
  });
}

struct Entry {
  std::string_view name;
  Reader read;
};

// What happens to applications and windows.
std::vector<Entry> windowActions() {
  return {
      {"activateApplication", act(
                                  +[](Parts& desktop, ProcessID pid) { desktop.workspace.activate(pid); }, "pid")},
      {"closeWindow", act(
                          +[](Parts& desktop, WindowNumber number) {
                            std::erase_if(desktop.state.windows,
                                          [&](const auto& window) { return window.number == number; });
                          },
                          "number")},
      {"hideApplication", act(
                              +[](Parts& desktop, ProcessID pid) { desktop.workspace.setHidden(pid, true); }, "pid")},
      {"launchApplication", launchApplication},
      {"minimizeWindow", act(
                             +[](Parts& desktop, WindowNumber number, std::optional<bool> minimized) {
                               onWindow(desktop, number,
                                        [&](auto& window) { window.minimized = minimized.value_or(true); });
                             },
                             "number", "minimized")},
      {"moveWindow", moveWindow},
      {"openWindow", openWindow},
      {"quitApplication", act(
                              +[](Parts& desktop, ProcessID pid) { desktop.workspace.quit(pid); }, "pid")},
      {"retitleWindow", act(
                            +[](Parts& desktop, WindowNumber number, std::string title) {
                              onWindow(desktop, number, [&](auto& window) { window.title = title; });
                            },
                            "number", "title")},
      {"setResponseTime", setResponseTime},
      {"unhideApplication",
       act(
           +[](Parts& desktop, ProcessID pid) { desktop.workspace.setHidden(pid, false); }, "pid")},
  };
}

// What happens to Spaces and displays.
std::vector<Entry> spaceActions() {
  return {
      {"addSpace", act(addSpace, "display")},
      {"bounceDock", act(
                         +[](Parts& desktop, std::uint16_t count, std::optional<Duration> after) {
                           desktop.spaces.bounceNext(count, after.value_or(ScenarioDock{}.bounceAfter));
                         },
                         "count", "after")},
      {"connectDisplay",
       [](Arguments& arguments) {
         return onParts([record = readDisplay(arguments)](Parts& desktop) { desktop.connectDisplay(record.display); });
       }},
      {"disconnectDisplay", act(
                                +[](Parts& desktop, DisplayID display) { desktop.disconnectDisplay(display); }, "id")},
      {"pressSymbolicHotKey", act(
                                  +[](Parts& desktop, int hotKey) { desktop.pressSymbolicHotKey(hotKey); }, "hotKey")},
      {"removeSpace", act(removeSpace, "space")},
      {"setDesktopCount",
       act(
           +[](Parts& desktop, std::uint16_t count) { desktop.spaces.setDesktopCount(count); }, "count")},
      {"setManagedDisplaySpaces",
       act(
           +[](Parts& desktop, PropertyList list) { desktop.spaces.replaceList(list); }, "list")},
      {"setMenuBarDisplay",
       act(
           +[](Parts& desktop, Nullable<std::string> display) { desktop.state.menuBarDisplay = display.value; },
           "display")},
      {"setRequests",
       [](Arguments& arguments) {
         return onParts([record = readRequests(arguments)](Parts& desktop) { record.applyTo(desktop.state.requests); });
       }},
      {"setSymbolicHotKey", setSymbolicHotKey},
      {"switchSpace", act(
                          +[](Parts& desktop, ManagedSpaceID space) { desktop.spaces.switchNow(space); }, "space")},
  };
}

// What happens to files, preferences and the machine.
std::vector<Entry> machineActions() {
  return {
      {"corruptFile", act(onFile<&SimulatedFiles::corrupt>, "path")},
      {"deleteFile", act(onFile<&SimulatedFiles::take>, "path")},
      {"failDisk", failDisk},
      {"fillDisk",
       act(
           +[](Parts& desktop, std::optional<std::uint32_t> room) { desktop.files.setRoom(room.value_or(0)); },
           "room")},
      {"freeDisk", act(freeDisk)},
      {"jumpClock", jumpClock},
      {"lockScreen", act(+[](Parts& desktop) { desktop.state.screenLocked = true; })},
      {"makeUnwritable", act(onFile<&SimulatedFiles::setUnwritable, true>, "path")},
      {"makeWritable", act(onFile<&SimulatedFiles::setUnwritable, false>, "path")},
      {"quit", [](Arguments&) -> ScriptAction { return [](SimulatedDesktop& desktop) { desktop.onQuit(0); }; }},
      {"removePreference", act(
                               +[](Parts& desktop, std::string key) { desktop.preferencesFile.remove(key); }, "key")},
      {"renamePlist", act(+[](Parts& desktop) { desktop.files.replace(Parts::spacesFile(), ""); })},
      {"setGlobalPreference",
       act(
           +[](Parts& desktop, std::string key, PropertyList value) { desktop.state.globalPreferences[key] = value; },
           "key", "value")},
      {"setPermission", setPermission},
      {"setPreference",
       act(
           +[](Parts& desktop, std::string key, PropertyList value) { desktop.preferencesFile.set(key, value); }, "key",
           "value")},
      {"sleepScreens", act(post<NotificationName::NSWorkspaceScreensDidSleepNotification>)},
      {"unlockScreen", act(+[](Parts& desktop) { desktop.state.screenLocked = false; })},
      {"wake", act(post<NotificationName::NSWorkspaceDidWakeNotification>)},
      {"wakeScreens", act(post<NotificationName::NSWorkspaceScreensDidWakeNotification>)},
      {"writeFile", writeFile},
  };
}

// What the user and other programs do.
std::vector<Entry> userActions() {
  return {
      {"answerAlert",
       act(
           +[](Parts& desktop, Nullable<std::string> button) { desktop.alerts.press(button.value); }, "button")},
      {"answerRenameDialog",
       act(
           +[](Parts& desktop, Nullable<std::string> name) { desktop.user.answerRenameDialog(name.value); }, "name")},
      {"callDBus", callDBus},
      {"clickDock", act(+[](Parts& desktop) { desktop.user.clickDock(); })},
      {"httpRequest", httpRequest},
      {"interruptCommand",
       act(
           +[](Parts& desktop, std::int32_t caller) { desktop.commandChannel.interrupt(caller); }, "caller")},
      {"listenToDBus", act(+[](Parts& desktop) { desktop.desktopService.listen(); })},
      {"movePointer", act(
                          +[](Parts& desktop, CGPoint to) { desktop.events.movePointer(to); }, "to")},
      {"openURL", act(
                      +[](Parts& desktop, std::string url) { desktop.urlEvents.open(url); }, "url")},
      {"pressKey", act(
                       +[](Parts& desktop, KeyArgument key, std::optional<std::uint64_t> modifiers) {
                         desktop.pressKey(key.code, modifiers.value_or(0));
                       },
                       "key", "modifiers")},
      {"pressMouse", act(+[](Parts& desktop) { desktop.events.pressLeftButton(); })},
      {"pullTrigger", pullTrigger},
      {"releaseMouse", act(+[](Parts& desktop) { desktop.events.releaseLeftButton(); })},
      {"runCommand",
       act(
           +[](Parts& desktop, std::vector<std::string> words) { desktop.commandChannel.run(words); }, "arguments")},
      {"runIntent", runIntent},
      {"runScriptCommand", runScriptCommand},
      {"speak", act(
                    +[](Parts& desktop, std::string phrase) { desktop.scriptEvents.speak(phrase); }, "phrase")},
      {"touch",
       act(
           +[](Parts& desktop, std::vector<CGPoint> contacts) { desktop.trackpads.touch(contacts); }, "contacts")},
  };
}

// Sorted by name.
const std::vector<Entry>& actions() {
  static const std::vector<Entry> entries = [] {
    std::vector<Entry> all;
    for (const auto& some : {windowActions(), spaceActions(), machineActions(), userActions()}) {
      std::ranges::copy(some, std::back_inserter(all));
    }
    std::ranges::sort(all, {}, &Entry::name);
    return all;
  }();
  return entries;
}

}  // namespace

std::optional<ScriptAction> readScriptAction(std::string_view name, ScenarioObject& arguments) {
  const auto found = std::ranges::find(actions(), name, &Entry::name);
  return found == actions().end() ? std::nullopt : std::optional(found->read(arguments));
}

std::vector<std::string_view> scriptActionNames() {
  std::vector<std::string_view> names;
  std::ranges::transform(actions(), std::back_inserter(names), &Entry::name);
  return names;
}

}  // namespace tallowin
