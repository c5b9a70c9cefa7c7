#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "platform/desktop.h"
#include "platform/geometry.h"
#include "platform/identifiers.h"
#include "platform/main_queue.h"
#include "platform/property_list.h"
#include "platform/simulated/raw_spaces.h"
#include "platform/system.h"
#include "platform/window_server.h"
#include "platform/workspace.h"

namespace tallowin {

using NameSet = std::set<std::string, std::less<>>;

/// A connected display.
struct SimulatedDisplay {
  DisplayID id = 1;
  std::string uuid;
  std::string name;
  CGRect bounds;
  bool builtin = false;
  bool operator==(const SimulatedDisplay&) const = default;
};

/// An installed application, running when it has a process id.
struct SimulatedApplication {
  std::optional<ProcessID> pid;
  std::optional<std::string> bundleIdentifier;
  std::string name;
  ActivationPolicy activationPolicy = ActivationPolicy::regular;
  bool isActive = false;
  bool isHidden = false;
  /// How long it takes to answer accessibility; nothing when it hangs and never does.
  std::optional<Duration> responseTime = Duration::zero();
  /// Pressing its windows' close buttons closes nothing: it asks its user, who does not answer.
  bool refusesClose = false;
  bool operator==(const SimulatedApplication&) const = default;

  /// Where it is installed.
  [[nodiscard]] std::string path() const { return "/Applications/" + name + ".app"; }
};

/// A window of a running application.
struct SimulatedWindow {
  WindowNumber number = 0;
  ProcessID pid = 0;
  std::string title;
  CGRect frame;
  std::vector<ManagedSpaceID> spaces;
  std::int64_t layer = 0;
  double alpha = 1;
  bool minimized = false;
  bool operator==(const SimulatedWindow&) const = default;
};

/// When an asked desktop tells that its Spaces have changed.
enum class SignTiming {
  exact,  ///< at once, when everything can be read
  early,  ///< when the list of Spaces can be read and which of them is active cannot yet, and once more when it can
  never,
};

/// What comes of the requests to an asked desktop. Requests are called as in the journal, such as "add-space".
struct RequestBehaviour {
  Duration time = std::chrono::milliseconds{1};  ///< from a request to what comes of it
  NameSet impossible;                            ///< abilities that the window manager lacks
  NameSet ignored;                               ///< accepted, and nothing comes of them
  NameSet partly;                                ///< carried out by half
  SignTiming signs = SignTiming::exact;
  Duration tornFor = std::chrono::milliseconds{5};  ///< between an early sign and the next
  bool operator==(const RequestBehaviour&) const = default;
};

/// An entry of the system's table of symbolic hot keys.
struct SymbolicHotKey {
  std::optional<SymbolicHotKeyBinding> binding;
  bool enabled = false;
  bool operator==(const SymbolicHotKey&) const = default;
};

/// The system's table of symbolic hot keys that concern Spaces, by number: 79 moves left a Space, 81 moves right a
/// Space, 118 to 133 switch to Desktop 1 to 16. It lasts as long as the process.
using SymbolicHotKeys = std::map<int, SymbolicHotKey>;

/// The table as a fresh account has it: arrows with Control, digits with Control for the first ten desktops and with
/// Control and Option for the rest; all bound and enabled.
[[nodiscard]] SymbolicHotKeys freshSymbolicHotKeys();

/// The enabled hot key that a press triggers, comparing the four modifiers only.
[[nodiscard]] std::optional<int> pressedHotKey(const SymbolicHotKeys& hotKeys, VirtualKeyCode keyCode,
                                               std::uint64_t flags);

/// What happens when a child process is started from a file.
struct SimulatedChild {
  std::string output;    ///< printed to standard output when it runs to its end
  bool missing = false;  ///< there is no such program
  bool operator==(const SimulatedChild&) const = default;
};

/// What the simulated machine is like at one moment, as plain data. The services of the simulated desktop are ways to
/// see it and to change it.
struct DesktopState {
  OperatingSystemVersion systemVersion{15, 3, 1};
  ProcessID ownProcess = 500;
  ConnectionID connection = 1;
  RawSpaces spaces;
  bool isAsked = false;       ///< switches and the like are asked for; else they are driven
  RequestBehaviour requests;  ///< where they are asked for
  /// Desktops are known by their places only: there is a number of them, on the first display, whose ids are kept by
  /// KeptDesktopPlaces.
  bool desktopsByPlace = false;
  std::optional<std::string> menuBarDisplay;
  std::vector<SimulatedDisplay> displays;  ///< the main one first
  std::vector<SimulatedApplication> applications;
  std::vector<SimulatedWindow> windows;  ///< front to back
  bool accessibilityAllowed = true;
  bool screenRecordingAllowed = true;
  bool screenLocked = false;
  CGPoint pointer;
  std::uint32_t pressedMouseButtons = 0;
  SymbolicHotKeys hotKeys = freshSymbolicHotKeys();
  std::map<std::string, PropertyList> globalPreferences;
  int trackpads = 1;
  /// Private functions that accept moves of windows and make none.
  NameSet ignoredMoves;
  /// Absent where windows are managed by the system itself.
  std::optional<WindowManagerFacts> windowManager;
  /// Key combinations, with their modifiers, that other programs have registered.
  std::set<std::pair<VirtualKeyCode, std::uint64_t>> takenHotKeys;
  /// TCP ports that other programs listen on.
  std::set<std::uint16_t> takenPorts;
  /// By path. A program that is not among them starts and prints nothing.
  std::map<std::string, SimulatedChild> programs;
  /// What scripts answer, by their source. One that is not among them fails.
  std::map<std::string, std::vector<std::string>, std::less<>> appleScripts;

  /// Null when there is none.
  [[nodiscard]] SimulatedWindow* window(WindowNumber number);
  [[nodiscard]] SimulatedApplication* application(ProcessID pid);
  [[nodiscard]] const SimulatedDisplay* display(DisplayID id) const;
  /// The name of a running application, empty when there is none.
  [[nodiscard]] std::string applicationName(ProcessID pid) const;
  /// Whether a window can be seen: it is on an active Space, not minimised, and its application not hidden.
  [[nodiscard]] bool isOnScreen(const SimulatedWindow& window) const;
  /// Puts a window in front of the others of its application; in front of all when that is the active one. False when
  /// there is no such window.
  bool raise(WindowNumber number);
  /// Closes a window as its close button does, unless its application refuses. False when there is none.
  bool close(WindowNumber number);
  /// The active Space of the display that holds a point, else of the first display; none without Spaces.
  [[nodiscard]] std::vector<ManagedSpaceID> activeSpacesAt(CGPoint point) const;
  /// The display that holds a point, or null.
  [[nodiscard]] const SimulatedDisplay* displayAt(CGPoint point) const;
  /// The display that an identifier of the managed-display-spaces list stands for: a UUID in any case, or "Main" for
  /// the main display. Null when it is not connected.
  [[nodiscard]] const SimulatedDisplay* displayNamed(std::string_view identifier) const;
};

}  // namespace tallowin
