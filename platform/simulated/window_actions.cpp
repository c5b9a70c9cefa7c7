#include "platform/simulated/window_actions.h"

#include "platform/simulated/parts_action.h"
#include "platform/simulated/scenario_records.h"

namespace tallowin {

namespace {

using Arguments = ScenarioObject;

/// An action on the window "number", if there is one by then.
template <typename Change>
ScriptAction onWindow(Arguments& arguments, Change change) {
  return onParts([number = arguments.require("number").integer<WindowNumber>(), change](SimulatedParts& desktop) {
    if (auto* const window = desktop.state.window(number)) {
      change(*window);
    }
  });
}

ScriptAction setHidden(Arguments& arguments, bool hidden) {
  return onParts([pid = arguments.require("pid").integer<ProcessID>(), hidden](SimulatedParts& desktop) {
    desktop.workspace.setHidden(pid, hidden);
  });
}

}  // namespace

ScriptAction activateApplication(Arguments& arguments) {
  return onParts([pid = arguments.require("pid").integer<ProcessID>()](SimulatedParts& desktop) {
    desktop.workspace.activate(pid);
  });
}

ScriptAction launchApplication(Arguments& arguments) {
  auto application = readApplication(arguments);
  application.pid = arguments.require("pid").integer<ProcessID>();
  return onParts([application](SimulatedParts& desktop) {
    desktop.workspace.launch(application);
    if (application.isActive) {
      desktop.workspace.activate(*application.pid);
    }
  });
}

ScriptAction quitApplication(Arguments& arguments) {
  return onParts(
      [pid = arguments.require("pid").integer<ProcessID>()](SimulatedParts& desktop) { desktop.workspace.quit(pid); });
}

ScriptAction hideApplication(Arguments& arguments) {
  return setHidden(arguments, true);
}

ScriptAction unhideApplication(Arguments& arguments) {
  return setHidden(arguments, false);
}

ScriptAction setResponseTime(Arguments& arguments) {
  return onParts([pid = arguments.require("pid").integer<ProcessID>(),
                  time = readResponseTime(arguments.require("responseTime"))](SimulatedParts& desktop) {
    if (auto* const application = desktop.state.application(pid)) {
      application->responseTime = time;
    }
  });
}

ScriptAction openWindow(Arguments& arguments) {
  return onParts([record = readWindow(arguments)](SimulatedParts& desktop) {
    if (desktop.state.window(record.window.number) == nullptr) {
      desktop.state.windows.insert(desktop.state.windows.begin(), record.placedIn(desktop.state));
    }
  });
}

ScriptAction closeWindow(Arguments& arguments) {
  return onParts([number = arguments.require("number").integer<WindowNumber>()](SimulatedParts& desktop) {
    std::erase_if(desktop.state.windows, [&](const SimulatedWindow& window) { return window.number == number; });
  });
}

ScriptAction retitleWindow(Arguments& arguments) {
  return onWindow(arguments,
                  [title = arguments.require("title").text()](SimulatedWindow& window) { window.title = title; });
}

ScriptAction moveWindow(Arguments& arguments) {
  const auto frame = arguments.find("frame");
  return onWindow(arguments, [frame = frame ? std::optional(frame->rect()) : std::nullopt,
                              spaces = readSpaces(arguments)](SimulatedWindow& window) {
    window.frame = frame.value_or(window.frame);
    window.spaces = spaces.value_or(window.spaces);
  });
}

ScriptAction minimizeWindow(Arguments& arguments) {
  const auto minimized = arguments.find("minimized");
  return onWindow(arguments,
                  [value = !minimized || minimized->boolean()](SimulatedWindow& window) { window.minimized = value; });
}

}  // namespace tallowin
