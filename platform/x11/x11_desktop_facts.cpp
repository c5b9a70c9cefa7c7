#include "platform/x11/x11_desktop_facts.h"

#include <algorithm>
#include <cstdlib>
#include <sstream>

#include "base/words.h"
#include "platform/x11/x11_properties.h"

namespace tallowin {

namespace {

/// What the X11 binding uses of EWMH, but for the check window, without which there would be no window manager to ask.
constexpr X11Atom usedHints[] = {
    X11Atom::netNumberOfDesktops,  X11Atom::netCurrentDesktop,       X11Atom::netDesktopNames,
    X11Atom::netWmDesktop,         X11Atom::netActiveWindow,         X11Atom::netClientList,
    X11Atom::netWmState,           X11Atom::netWmStateHidden,        X11Atom::netWmStateSticky,
    X11Atom::netWmStateFullscreen, X11Atom::netWmStateMaximizedVert, X11Atom::netWmStateMaximizedHorz,
    X11Atom::netFrameExtents,      X11Atom::netCloseWindow,          X11Atom::netMoveresizeWindow,
    X11Atom::netRestackWindow,
};

struct VersionArgument {
  std::string_view program;
  std::string_view argument;
};
constexpr VersionArgument versionArguments[] = {
    {"awesome", "--version"},  {"bspwm", "-v"},         {"fluxbox", "-version"},   {"i3", "--version"},
    {"icewm", "--version"},    {"jwm", "-v"},           {"kwin_x11", "--version"}, {"marco", "--version"},
    {"metacity", "--version"}, {"muffin", "--version"}, {"mutter", "--version"},   {"openbox", "--version"},
    {"xfwm4", "--version"},
};

SetUpCheck windowManagerCheck(const WindowManagerFacts& manager) {
  std::string finding = "The window manager is " + (manager.name.empty() ? "one without a name" : manager.name);
  finding += manager.version.empty() ? "." : " " + manager.version + ".";
  const auto missing = joined(manager.missingHints, ", ");
  finding += missing.empty() ? " It supports all that is used of EWMH."
                             : " It does not claim to support these hints of EWMH: " + missing + ".";
  return {"Window manager", true, finding};
}

SetUpCheck desktopsCheck(std::size_t count) {
  if (count == 0) {
    return {"Desktops", false, "The window manager publishes no desktops (_NET_NUMBER_OF_DESKTOPS).",
            "Turn its virtual desktops on, or use a window manager that has some; docs/window-managers.md lists those "
            "that work."};
  }
  return {"Desktops", true, count == 1 ? "There is 1 desktop." : "There are " + std::to_string(count) + " desktops."};
}

}  // namespace

std::optional<WindowManagerFacts> X11DesktopFacts::windowManager() {
  const auto state = desktops_.read();
  if (state.checkWindow == 0) {
    return std::nullopt;
  }
  WindowManagerFacts facts{validUtf8(state.managerName), "", missingHints()};
  if (const auto pid = windows_.process(state.checkWindow)) {
    facts.version = versionOf(*pid);
  }
  return facts;
}

std::vector<SetUpCheck> X11DesktopFacts::checks() {
  const char* display = std::getenv("DISPLAY");
  std::vector<SetUpCheck> checks = {
      {"Display", true, "The X server is \"" + std::string(display != nullptr ? display : "") + "\"."}};
  if (const auto manager = windowManager()) {
    checks.push_back(windowManagerCheck(*manager));
    checks.push_back(desktopsCheck(desktops_.read().spaces.size()));
  } else {
    checks.push_back({"Window manager", false, "No window manager that speaks EWMH runs there.",
                      "Start one. Tallowin notices when it comes."});
  }
  return checks;
}

std::string X11DesktopFacts::versionOf(ProcessID pid) {
  const auto argument = versionArgument(programName(pid));
  if (argument.empty()) {
    return "";
  }
  // The program that runs, wherever it is installed.
  const auto output = processes_.run({"/proc/" + std::to_string(pid) + "/exe", {std::string(argument)}, {}});
  return output ? validUtf8(versionIn(*output)) : "";
}

std::vector<std::string> X11DesktopFacts::missingHints() {
  const auto supported = parseWords(
      connection_.takeProperty(connection_.requestProperty(connection_.root(), X11Atom::netSupported, XCB_ATOM_ATOM)));
  std::vector<std::string> missing;
  for (const auto hint : usedHints) {
    if (std::ranges::find(supported, connection_.atom(hint)) == supported.end()) {
      missing.emplace_back(x11AtomNames.at(static_cast<std::size_t>(hint)));
    }
  }
  return missing;
}

std::string versionIn(std::string text) {
  std::ranges::replace(text, ',', ' ');
  std::istringstream words(text);
  for (std::string word; words >> word;) {
    const auto version = word.starts_with('v') ? word.substr(1) : word;
    if (!version.empty() && version[0] >= '0' && version[0] <= '9' && version.find('.') != version.npos) {
      return version;
    }
  }
  return "";
}

std::string_view versionArgument(std::string_view program) {
  const auto* const found = std::ranges::find(versionArguments, program, &VersionArgument::program);
  return found != std::end(versionArguments) ? found->argument : std::string_view();
}

}  // namespace tallowin
