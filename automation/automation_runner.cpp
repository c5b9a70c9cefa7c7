#include "automation/automation_runner.h"

#include <algorithm>
#include <chrono>
#include <iterator>
#include <tuple>
#include <utility>

#include "base/app_paths.h"
#include "base/unicode.h"
#include "base/url.h"

namespace tallowin {

namespace {

struct ModifierName {
  std::string_view name;
  std::uint64_t flag;
};

constexpr ModifierName modifierNames[] = {
    {"cmd", CGEventFlag::command},      {"command", CGEventFlag::command}, {"⌘", CGEventFlag::command},
    {"shift", CGEventFlag::shift},      {"⇧", CGEventFlag::shift},         {"opt", CGEventFlag::alternate},
    {"option", CGEventFlag::alternate}, {"alt", CGEventFlag::alternate},   {"⌥", CGEventFlag::alternate},
    {"ctrl", CGEventFlag::control},     {"control", CGEventFlag::control}, {"⌃", CGEventFlag::control},
};

struct KeyName {
  std::string_view name;
  VirtualKeyCode keyCode;
};

// HIToolbox/Events.h, kVK_ANSI_* and the keys that do not depend on the layout.
constexpr KeyName keyNames[] = {
    {"a", 0},       {"s", 1},      {"d", 2},       {"f", 3},       {"h", 4},     {"g", 5},      {"z", 6},
    {"x", 7},       {"c", 8},      {"v", 9},       {"b", 11},      {"q", 12},    {"w", 13},     {"e", 14},
    {"r", 15},      {"y", 16},     {"t", 17},      {"1", 18},      {"2", 19},    {"3", 20},     {"4", 21},
    {"6", 22},      {"5", 23},     {"=", 24},      {"9", 25},      {"7", 26},    {"-", 27},     {"8", 28},
    {"0", 29},      {"]", 30},     {"o", 31},      {"u", 32},      {"[", 33},    {"i", 34},     {"p", 35},
    {"return", 36}, {"enter", 36}, {"l", 37},      {"j", 38},      {"'", 39},    {"k", 40},     {";", 41},
    {"\\", 42},     {",", 43},     {"/", 44},      {"n", 45},      {"m", 46},    {".", 47},     {"tab", 48},
    {"space", 49},  {"`", 50},     {"delete", 51}, {"escape", 53}, {"esc", 53},  {"left", 123}, {"right", 124},
    {"down", 125},  {"up", 126},   {"f1", 122},    {"f2", 120},    {"f3", 99},   {"f4", 118},   {"f5", 96},
    {"f6", 97},     {"f7", 98},    {"f8", 100},    {"f9", 101},    {"f10", 109}, {"f11", 103},  {"f12", 111},
};
static_assert(std::size(keyNames) == 70);

using namespace std::chrono_literals;

constexpr auto automationRunnerCategory = "Automation";
constexpr auto shell = "/bin/zsh";
constexpr auto shortcutsTool = "/usr/bin/shortcuts";

// From the change of the Space on, so that the order is: browser, applications and URLs, hiding, keystroke.
constexpr auto browserDelay = 300ms;
constexpr auto launchDelay = 350ms;
constexpr auto hidingDelay = 400ms;
constexpr auto keystrokeDelay = 450ms;

bool isSet(const std::optional<std::string>& text) {
  return !text.value_or("").empty();
}

constexpr std::size_t longestName = 255;  // in bytes; limits.h, NAME_MAX
constexpr std::string_view suffix = ".md";

/// The text split at every one of these ASCII characters, each part trimmed. Empty parts stay.
std::vector<std::string> trimmedParts(std::string_view text, std::string_view separators) {
  std::vector<std::string> parts;
  for (auto end = text.find_first_of(separators);; end = text.find_first_of(separators)) {
    parts.emplace_back(trimmed(text.substr(0, end)));
    if (end == text.npos) {
      return parts;
    }
    text.remove_prefix(end + 1);
  }
}

/// The URL to open for what a user wrote: a URL when there is "://" in it, else a file path, in which a leading "~"
/// stands for the home folder and which begins there when it is relative. Nothing when it is empty or no valid URL.
std::optional<std::string> openableURL(const std::string& text, const std::filesystem::path& home) {
  if (text.find("://") != text.npos) {
    return URL::parse(text) ? std::optional(text) : std::nullopt;
  }
  if (text.empty()) {
    return std::nullopt;
  }
  const bool belowHome = text == "~" || text.starts_with("~/");
  return fileURL(home / (belowHome ? text.substr(std::min<std::size_t>(2, text.size())) : text));
}

/// Hides the running applications with a Dock icon that are not among `kept`, but never this program (`own`) nor the
/// Finder.
void hideOtherApps(Workspace& workspace, const std::set<ProcessID>& kept, ProcessID own) {
  for (const auto& application : workspace.runningApplications()) {
    const bool hides = application.activationPolicy == ActivationPolicy::regular && !kept.contains(application.pid) &&
                       application.pid != own && application.bundleIdentifier != "com.apple.finder";
    if (hides) {
      workspace.hide(application.pid);
    }
  }
}

}  // namespace

void BrowserProfiles::open(Workspace& workspace, std::string_view bundleIdentifier, const std::string& profile) {
  const auto application = workspace.URLForApplicationWithBundleIdentifier(bundleIdentifier);
  if (!application) {
    return;
  }
  OpenConfiguration configuration;
  configuration.createsNewApplicationInstance = false;
  configuration.arguments = {"--profile-directory=" + profile};
  workspace.openApplicationAtURL(*application, configuration, [](const auto& /*result*/) {});
}

std::optional<Keystroke> Keystroke::parse(std::string_view text) {
  std::uint64_t flags = 0;
  std::optional<VirtualKeyCode> key;
  for (const auto& part : trimmedParts(lowerCased(text), "+")) {
    const auto modifier = std::ranges::find(modifierNames, part, &ModifierName::name);
    if (modifier != std::end(modifierNames)) {
      flags |= modifier->flag;
      continue;
    }
    const auto found = std::ranges::find(keyNames, part, &KeyName::name);
    key = found != std::end(keyNames) ? std::optional(found->keyCode) : std::nullopt;
  }
  return key ? std::optional(Keystroke{*key, flags}) : std::nullopt;
}

void Keystroke::send(std::string_view text, Events& events) {
  const auto keystroke = parse(text);
  if (!keystroke) {
    return;
  }
  for (const bool down : {true, false}) {
    if (const auto event = events.CGEventCreateKeyboardEvent(keystroke->keyCode, down)) {
      events.CGEventSetFlags(*event, keystroke->flags);
      events.CGEventPost(CGEventTap::hid, *event);
    }
  }
}

AutomationRunner::AutomationRunner(const ProgramServices& services, IsSpaceEmpty isSpaceEmpty, AppsOnSpace appsOnSpace)
    : services_(services),
      isSpaceEmpty_(std::move(isSpaceEmpty)),
      appsOnSpace_(std::move(appsOnSpace)),
      steps_(services.mainQueue) {}

void AutomationRunner::spaceChanged(const std::optional<Space>& from, const Space& to) {
  if (!services_.settings.get(setting::runAutomations)) {
    return;
  }
  if (from) {
    if (const auto automation = services_.store.meta(from->id).automation) {
      leave(*from, *automation);
    }
  }
  if (const auto automation = services_.store.meta(to.id).automation) {
    enter(to, *automation);
  }
}

void AutomationRunner::leave(const Space& space, const SpaceAutomation& automation) {
  if (isSet(automation.shortcutOnLeave)) {
    runShortcut(*automation.shortcutOnLeave);
  }
  if (isSet(automation.scriptOnLeave)) {
    runScript(*automation.scriptOnLeave, space);
  }
}

void AutomationRunner::enter(const Space& space, const SpaceAutomation& automation) {
  if (mayLaunch(space, automation)) {
    steps_.after(launchDelay, [this, automation] { launch(automation); });
  }
  if (automation.browserApp && isSet(automation.browserProfile)) {
    steps_.after(browserDelay, [this, browser = *automation.browserApp, profile = *automation.browserProfile] {
      BrowserProfiles::open(services_.workspace, browser, profile);
    });
  }
  if (isSet(automation.keystrokeOnEnter)) {
    steps_.after(keystrokeDelay,
                 [this, text = *automation.keystrokeOnEnter] { Keystroke::send(text, services_.events); });
  }
  if (automation.hideOtherApps) {
    steps_.after(hidingDelay, [this, kept = appsOnSpace_(space)] {
      hideOtherApps(services_.workspace, kept, services_.system.processIdentifier());
    });
  }
  if (isSet(automation.shortcutOnEnter)) {
    runShortcut(*automation.shortcutOnEnter);
  }
  if (isSet(automation.scriptOnEnter)) {
    runScript(*automation.scriptOnEnter, space);
  }
}

bool AutomationRunner::mayLaunch(const Space& space, const SpaceAutomation& automation) {
  if (automation.launchOnlyIfEmpty && !isSpaceEmpty_(space)) {
    return false;
  }
  const bool first = launched_.insert(space.id).second;
  return first || !automation.launchOnce;
}

void AutomationRunner::launch(const SpaceAutomation& automation) {
  for (const auto& path : automation.launchApps) {
    OpenConfiguration configuration;
    configuration.activates = true;
    services_.workspace.openApplicationAtURL(path, configuration, [&log = services_.log, path](const auto& result) {
      if (!result) {
        log.error(automationRunnerCategory, "launch " + path + ": " + result.error());
      }
    });
  }
  for (const auto& text : automation.openURLs) {
    if (const auto url = openableURL(text, services_.folders.home)) {
      services_.workspace.openURL(*url);
    }
  }
}

std::vector<std::string> AutomationRunner::availableShortcuts() {
  const auto output = services_.processes.run({shortcutsTool, {"list"}, {}});
  auto names = trimmedParts(output.value_or(""), "\r\n");
  std::erase_if(names, [](const std::string& name) { return name.empty() || !isValidUTF8(name); });
  std::ranges::sort(names);
  return names;
}

void AutomationRunner::runShortcut(const std::string& name) {
  run({shortcutsTool, {"run", name}, {}});
}

void AutomationRunner::runScript(const std::string& command, const Space& space) {
  const auto number = space.desktopNumber ? std::to_string(*space.desktopNumber) : "";
  run({shell,
       {"-lc", command},
       {{"TALLOWIN_SPACE_NAME", services_.store.displayName(space)},
        {"TALLOWIN_SPACE_NUMBER", number},
        {"TALLOWIN_SPACE_ID", space.id}}});
}

void AutomationRunner::run(const ProcessRequest& request) {
  if (const auto started = services_.processes.launch(request); !started) {
    services_.log.error(automationRunnerCategory, "run " + request.executable + ": " + started.error());
  }
}

std::filesystem::path NoteFiles::folder() const {
  auto folder = services_.folders.documents / "Tallowin Notes";
  std::ignore = services_.files.createDirectory(folder);
  return folder;
}

/// Control characters were once part of the name: such a file is found under it.
std::filesystem::path NoteFiles::file(const std::string& title) const {
  const auto name = asFileName(title, "/:");
  const auto nameOf = [](std::string_view text) {
    return std::string(charactersWithin(text, longestName - suffix.size())).append(suffix);
  };
  auto earlier = folder() / nameOf(name);
  return services_.files.exists(earlier) ? earlier : folder() / nameOf(printable(name, "-"));
}

std::expected<void, FileError> NoteFiles::open(const Space& space) const {
  const auto title = services_.store.displayName(space);
  const auto path = file(title);
  if (!services_.files.exists(path)) {
    const auto text = "# " + title + "\n\n" + services_.store.meta(space.id).note.value_or("") + "\n\n- [ ] \n";
    if (const auto written = services_.files.writeAtomically(path, text); !written) {
      services_.log.error("NoteFiles", "cannot write " + path.string() + ": " + written.error().description);
      return written;
    }
  }
  services_.workspace.openURL(fileURL(path));
  return {};
}

}  // namespace tallowin
