#include "platform/simulated/script_actions.h"

#include <algorithm>
#include <cmath>

#include "platform/simulated/parts_action.h"
#include "platform/simulated/scenario_records.h"
#include "platform/simulated/window_actions.h"

namespace tallowin {

namespace {

using Arguments = ScenarioObject;
using Reader = ScriptAction (*)(Arguments&);

ScriptAction switchSpace(Arguments& arguments) {
  return onParts([space = arguments.require("space").integer<ManagedSpaceID>()](SimulatedParts& desktop) {
    desktop.spaces.switchNow(space);
  });
}

ScriptAction addSpace(Arguments& arguments) {
  const auto display = arguments.find("display");
  return onParts([name = display ? std::optional(display->text()) : std::nullopt](SimulatedParts& desktop) {
    const auto rows = desktop.spaces.rows();
    if (const auto places = desktop.spaces.places()) {
      desktop.spaces.setDesktopCount(places->size() + 1);
    } else if (name || !rows.empty()) {
      desktop.spaces.addDesktop(name ? *name : rows.front().display);
    }
  });
}

ScriptAction removeSpace(Arguments& arguments) {
  return onParts([space = arguments.require("space").integer<ManagedSpaceID>()](SimulatedParts& desktop) {
    if (const auto places = desktop.spaces.places()) {
      desktop.spaces.setDesktopCount(places->size() - 1);
    } else {
      desktop.spaces.removeDesktop(space);
    }
  });
}

ScriptAction setDesktopCount(Arguments& arguments) {
  return onParts([count = arguments.require("count").integer<std::uint16_t>()](SimulatedParts& desktop) {
    desktop.spaces.setDesktopCount(count);
  });
}

ScriptAction setManagedDisplaySpaces(Arguments& arguments) {
  return onParts(
      [list = arguments.require("list").json()](SimulatedParts& desktop) { desktop.spaces.replaceList(list); });
}

ScriptAction setMenuBarDisplay(Arguments& arguments) {
  const auto display = arguments.require("display");
  return onParts([name = display.isNull() ? std::nullopt : std::optional(display.text())](SimulatedParts& desktop) {
    desktop.state.menuBarDisplay = name;
  });
}

ScriptAction setRequests(Arguments& arguments) {
  return onParts(
      [record = readRequests(arguments)](SimulatedParts& desktop) { record.applyTo(desktop.state.requests); });
}

ScriptAction bounceDock(Arguments& arguments) {
  const auto after = arguments.find("after");
  return onParts([count = arguments.require("count").integer<std::uint16_t>(),
                  delay = after ? after->seconds() : ScenarioDock{}.bounceAfter](SimulatedParts& desktop) {
    desktop.spaces.bounceNext(count, delay);
  });
}

ScriptAction connectDisplay(Arguments& arguments) {
  return onParts(
      [record = readDisplay(arguments)](SimulatedParts& desktop) { desktop.connectDisplay(record.display); });
}

ScriptAction disconnectDisplay(Arguments& arguments) {
  return onParts([display = arguments.require("id").integer<DisplayID>()](SimulatedParts& desktop) {
    desktop.disconnectDisplay(display);
  });
}

ScriptAction setPreference(Arguments& arguments) {
  return onParts([key = arguments.require("key").text(), value = arguments.require("value").json()](
                     SimulatedParts& desktop) { desktop.preferencesFile.set(key, value); });
}

ScriptAction removePreference(Arguments& arguments) {
  return onParts(
      [key = arguments.require("key").text()](SimulatedParts& desktop) { desktop.preferencesFile.remove(key); });
}

ScriptAction setGlobalPreference(Arguments& arguments) {
  return onParts([key = arguments.require("key").text(), value = arguments.require("value").json()](
                     SimulatedParts& desktop) { desktop.state.globalPreferences[key] = value; });
}

/// An action on the file "path".
template <typename Change>
ScriptAction onFile(Arguments& arguments, Change change) {
  return onParts(
      [path = readPath(arguments.require("path")), change](SimulatedParts& desktop) { change(desktop.files, path); });
}

ScriptAction writeFile(Arguments& arguments) {
  const auto replace = arguments.find("replace");
  return onFile(arguments, [bytes = readBytes(arguments), replaces = replace && replace->boolean()](
                               SimulatedFiles& files, const std::string& path) {
    if (replaces) {
      files.replace(path, bytes);
    } else {
      files.overwrite(path, bytes);
    }
  });
}

ScriptAction deleteFile(Arguments& arguments) {
  return onFile(arguments, [](SimulatedFiles& files, const std::string& path) { files.take(path); });
}

ScriptAction corruptFile(Arguments& arguments) {
  return onFile(arguments, [](SimulatedFiles& files, const std::string& path) { files.corrupt(path); });
}

ScriptAction makeUnwritable(Arguments& arguments) {
  return onFile(arguments, [](SimulatedFiles& files, const std::string& path) { files.setUnwritable(path, true); });
}

ScriptAction makeWritable(Arguments& arguments) {
  return onFile(arguments, [](SimulatedFiles& files, const std::string& path) { files.setUnwritable(path, false); });
}

/// With "room", files of so many bytes can still be written.
ScriptAction fillDisk(Arguments& arguments) {
  const auto room = arguments.find("room");
  return onParts(
      [bytes = room ? room->integer<std::uint32_t>() : 0](SimulatedParts& desktop) { desktop.files.setRoom(bytes); });
}

ScriptAction failDisk(Arguments& arguments) {
  static constexpr std::pair<std::string_view, WriteStage> stages[] = {{"open", WriteStage::open},
                                                                       {"write", WriteStage::write},
                                                                       {"flush", WriteStage::flush},
                                                                       {"rename", WriteStage::rename},
                                                                       {"folder", WriteStage::folder}};
  return onParts(
      [stage = arguments.require("stage").oneOf(stages)](SimulatedParts& desktop) { desktop.files.failAt(stage); });
}

void freeDisk(SimulatedParts& desktop) {
  desktop.files.setRoom(std::nullopt);
  desktop.files.failAt(std::nullopt);
}

ScriptAction setPermission(Arguments& arguments) {
  static constexpr std::pair<std::string_view, bool DesktopState::*> permissions[] = {
      {"accessibility", &DesktopState::accessibilityAllowed},
      {"screenRecording", &DesktopState::screenRecordingAllowed}};
  return onParts([permission = arguments.require("permission").oneOf(permissions),
                  allowed = arguments.require("allowed").boolean()](SimulatedParts& desktop) {
    desktop.state.*permission = allowed;
  });
}

ScriptAction movePointer(Arguments& arguments) {
  return onParts([to = arguments.require("to").point()](SimulatedParts& desktop) { desktop.events.movePointer(to); });
}

ScriptAction pressKey(Arguments& arguments) {
  const auto modifiers = arguments.find("modifiers");
  return onParts([key = readKey(arguments.require("key")), flags = modifiers ? modifiers->integer<std::uint64_t>() : 0](
                     SimulatedParts& desktop) { desktop.pressKey(key, flags); });
}

ScriptAction answerAlert(Arguments& arguments) {
  const auto button = arguments.require("button");
  return onParts([text = button.isNull() ? std::nullopt : std::optional(button.text())](SimulatedParts& desktop) {
    desktop.alerts.press(text);
  });
}

ScriptAction answerRenameDialog(Arguments& arguments) {
  const auto name = arguments.require("name");
  return onParts([text = name.isNull() ? std::nullopt : std::optional(name.text())](SimulatedParts& desktop) {
    desktop.user.answerRenameDialog(text);
  });
}

ScriptAction pullTrigger(Arguments& arguments) {
  static constexpr std::pair<std::string_view, SimulatedTrigger SimulatedUser::*> triggers[] = {
      {"edges", &SimulatedUser::edges}, {"touch", &SimulatedUser::touch}};
  return onParts([trigger = arguments.require("trigger").oneOf(triggers)](SimulatedParts& desktop) {
    (desktop.user.*trigger).pull();
  });
}

ScriptAction pressSymbolicHotKey(Arguments& arguments) {
  return onParts([hotKey = arguments.require("hotKey").integer<int>()](SimulatedParts& desktop) {
    desktop.pressSymbolicHotKey(hotKey);
  });
}

ScriptAction setSymbolicHotKey(Arguments& arguments) {
  const auto binding = arguments.require("binding");
  HotKeyRecord record;
  if (!binding.isNull()) {
    ScenarioObject object(binding);
    record = readHotKey(object);
  }
  return onParts([hotKey = arguments.require("hotKey").integer<int>(), record](SimulatedParts& desktop) {
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
  return onParts([jump = Duration{std::llround(by.number() * 1e9)}](SimulatedParts& desktop) {
    desktop.clock.jumpWallClock(jump);
  });
}

ScriptAction touch(Arguments& arguments) {
  std::vector<CGPoint> contacts;
  for (const auto& contact : arguments.require("contacts").list()) {
    contacts.push_back(contact.point());
  }
  return onParts([contacts](SimulatedParts& desktop) { desktop.trackpads.touch(contacts); });
}

/// An action without arguments.
template <void (*act)(SimulatedParts&)>
ScriptAction plain(Arguments& /*arguments*/) {
  return onParts(act);
}

template <NotificationName name>
void post(SimulatedParts& desktop) {
  desktop.workspaceNotifications.post({name, std::nullopt});
}

void renamePlist(SimulatedParts& desktop) {
  desktop.files.replace(SimulatedParts::spacesFile(), "");
}

ScriptAction quit(Arguments& /*arguments*/) {
  return [](SimulatedDesktop& desktop) { desktop.onQuit(0); };
}

ScriptAction openURL(Arguments& arguments) {
  return onParts([url = arguments.require("url").text()](SimulatedParts& desktop) { desktop.urlEvents.open(url); });
}

ScriptAction runCommand(Arguments& arguments) {
  std::vector<std::string> words;
  for (const auto& word : arguments.require("arguments").list()) {
    words.push_back(word.text());
  }
  return onParts([words](SimulatedParts& desktop) { desktop.commandChannel.run(words); });
}

/// The request as bytes, or put together from its parts.
std::string readHTTPRequest(Arguments& arguments) {
  const auto target = arguments.find("target");
  if (!target) {
    return readBytes(arguments);
  }
  const auto method = arguments.find("method");
  std::string request = (method ? method->text() : "GET") + " " + target->text() + " HTTP/1.1\r\nHost: localhost\r\n";
  if (const auto headers = arguments.find("headers")) {
    for (const auto& [name, value] : headers->entries()) {
      request.append(name).append(": ").append(value.text()).append("\r\n");
    }
  }
  const auto body = arguments.find("body");
  return request + "\r\n" + (body ? body->text() : "");
}

ScriptAction httpRequest(Arguments& arguments) {
  constexpr std::uint16_t standardPort = 57301;
  const auto port = arguments.find("port");
  return onParts([port = port ? port->integer<std::uint16_t>() : standardPort, request = readHTTPRequest(arguments)](
                     SimulatedParts& desktop) { desktop.listeners.request(port, request); });
}

ScriptAction interruptCommand(Arguments& arguments) {
  return onParts([caller = arguments.require("caller").integer<std::int32_t>()](SimulatedParts& desktop) {
    desktop.commandChannel.interrupt(caller);
  });
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
  const auto direct = arguments.find("directParameter");
  const ScriptCommandEvent event{arguments.require("class").text(), direct ? direct->json() : PropertyList(),
                                 findDictionary(arguments, "arguments")};
  return onParts([event](SimulatedParts& desktop) { desktop.scriptEvents.run(event); });
}

ScriptAction runIntent(Arguments& arguments) {
  const IntentEvent event{arguments.require("intent").text(), findDictionary(arguments, "parameters")};
  return onParts([event](SimulatedParts& desktop) { desktop.scriptEvents.run(event); });
}

ScriptAction speak(Arguments& arguments) {
  return onParts(
      [phrase = arguments.require("phrase").text()](SimulatedParts& desktop) { desktop.scriptEvents.speak(phrase); });
}

ScriptAction callDBus(Arguments& arguments) {
  auto values = PropertyList::array();
  if (const auto given = arguments.find("arguments")) {
    for (const auto& value : given->list()) {
      values.push_back(value.json());
    }
  }
  return onParts([member = arguments.require("member").text(), values](SimulatedParts& desktop) {
    desktop.desktopService.call(member, values);
  });
}

struct Entry {
  std::string_view name;
  Reader read;
};

// Sorted by name.
constexpr Entry actions[] = {
    {"activateApplication", activateApplication},
    {"addSpace", addSpace},
    {"answerAlert", answerAlert},
    {"answerRenameDialog", answerRenameDialog},
    {"bounceDock", bounceDock},
    {"callDBus", callDBus},
    {"clickDock", plain<[](SimulatedParts& desktop) { desktop.user.clickDock(); }>},
    {"closeWindow", closeWindow},
    {"connectDisplay", connectDisplay},
    {"corruptFile", corruptFile},
    {"deleteFile", deleteFile},
    {"disconnectDisplay", disconnectDisplay},
    {"failDisk", failDisk},
    {"fillDisk", fillDisk},
    {"freeDisk", plain<freeDisk>},
    {"hideApplication", hideApplication},
    {"httpRequest", httpRequest},
    {"interruptCommand", interruptCommand},
    {"jumpClock", jumpClock},
    {"launchApplication", launchApplication},
    {"listenToDBus", plain<[](SimulatedParts& desktop) { desktop.desktopService.listen(); }>},
    {"lockScreen", plain<[](SimulatedParts& desktop) { desktop.state.screenLocked = true; }>},
    {"makeUnwritable", makeUnwritable},
    {"makeWritable", makeWritable},
    {"minimizeWindow", minimizeWindow},
    {"movePointer", movePointer},
    {"moveWindow", moveWindow},
    {"openURL", openURL},
    {"openWindow", openWindow},
    {"pressKey", pressKey},
    {"pressMouse", plain<[](SimulatedParts& desktop) { desktop.events.pressLeftButton(); }>},
    {"pressSymbolicHotKey", pressSymbolicHotKey},
    {"pullTrigger", pullTrigger},
    {"quit", quit},
    {"quitApplication", quitApplication},
    {"releaseMouse", plain<[](SimulatedParts& desktop) { desktop.events.releaseLeftButton(); }>},
    {"removePreference", removePreference},
    {"removeSpace", removeSpace},
    {"renamePlist", plain<renamePlist>},
    {"retitleWindow", retitleWindow},
    {"runCommand", runCommand},
    {"runIntent", runIntent},
    {"runScriptCommand", runScriptCommand},
    {"setDesktopCount", setDesktopCount},
    {"setGlobalPreference", setGlobalPreference},
    {"setManagedDisplaySpaces", setManagedDisplaySpaces},
    {"setMenuBarDisplay", setMenuBarDisplay},
    {"setPermission", setPermission},
    {"setPreference", setPreference},
    {"setRequests", setRequests},
    {"setResponseTime", setResponseTime},
    {"setSymbolicHotKey", setSymbolicHotKey},
    {"sleepScreens", plain<post<NotificationName::NSWorkspaceScreensDidSleepNotification>>},
    {"speak", speak},
    {"switchSpace", switchSpace},
    {"touch", touch},
    {"unhideApplication", unhideApplication},
    {"unlockScreen", plain<[](SimulatedParts& desktop) { desktop.state.screenLocked = false; }>},
    {"wake", plain<post<NotificationName::NSWorkspaceDidWakeNotification>>},
    {"wakeScreens", plain<post<NotificationName::NSWorkspaceScreensDidWakeNotification>>},
    {"writeFile", writeFile},
};

}  // namespace

std::optional<ScriptAction> readScriptAction(std::string_view name, ScenarioObject& arguments) {
  const auto* const found = std::ranges::find(actions, name, &Entry::name);
  return found == std::ranges::end(actions) ? std::nullopt : std::optional(found->read(arguments));
}

std::vector<std::string_view> scriptActionNames() {
  std::vector<std::string_view> names;
  std::ranges::transform(actions, std::back_inserter(names), &Entry::name);
  return names;
}

}  // namespace tallowin
