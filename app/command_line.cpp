#include "app/command_line.h"

#include <algorithm>
#include <array>
#include <limits>
#include <map>
#include <vector>

#include "app/request_words.h"
#include "base/decimal_integer.h"
#include "platform/settings_window.h"

namespace tallowin {

namespace {

/// The modes by the argument that asks for them. The first one found runs; the first two need nothing else to be right.
constexpr auto modes = std::to_array<std::pair<std::string_view, Mode>>({
    {"--help", Mode::help},
    {"--version", Mode::version},
    {"--probe", Mode::probe},
    {"--switch", Mode::switchSpace},
    {"--capture", Mode::capture},
    {"--settings-list", Mode::listSettings},
    {"--get", Mode::getSetting},
    {"--set", Mode::setSetting},
    {"--unset", Mode::unsetSetting},
});

constexpr auto platforms = std::to_array<std::pair<std::string_view, PlatformChoice>>({
    {"auto", PlatformChoice::automatic},
    {"x11", PlatformChoice::x11},
    {"simulated", PlatformChoice::simulated},
    {"none", PlatformChoice::none},
});

/// The words that are no options, among those that were given.
constexpr std::string_view request;

/// Options that were given, with what followed each. The last one wins.
using Given = std::map<std::string_view, std::vector<std::string>>;

std::expected<Given, std::string> gather(std::span<const std::string> arguments) {
  Given given;
  bool optionsEnded = false;
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    optionsEnded = optionsEnded || arguments[i] == "--";
    const auto option = std::ranges::find(commandLineOptions(), arguments[i], &CommandLineOption::name);
    // Behind a word of a request it may be anything, a name for instance.
    const bool isPlain = arguments[i] == "classic" && given.contains(request);
    if (option == commandLineOptions().end() || isPlain || optionsEnded) {
      given[request].push_back(arguments[i]);
      continue;
    }
    if (arguments.size() - i - 1 < option->values.size()) {
      return std::unexpected(std::string(option->name) + " needs more after it: " + usageOf(*option));
    }
    const auto first = arguments.begin() + static_cast<std::ptrdiff_t>(i) + 1;
    const auto count = static_cast<std::ptrdiff_t>(option->values.size());
    given[option->name] = std::vector(first, first + count);
    i += option->values.size();
  }
  return given;
}

std::optional<std::string> valueOf(const Given& given, std::string_view option) {
  const auto found = given.find(option);
  return found != given.end() ? std::optional(found->second.front()) : std::nullopt;
}

/// An empty text when all is well, else what is wrong.
std::string readPlatform(const Given& given, const std::optional<std::string>& environment, CommandLine& line) {
  const auto argument = valueOf(given, "--platform");
  const auto& name = argument ? argument : environment;
  if (!name || (name->empty() && !argument)) {
    return "";
  }
  const auto found = std::ranges::find(platforms, *name, &std::pair<std::string_view, PlatformChoice>::first);
  if (found == platforms.end()) {
    return std::string(argument ? "--platform" : "TALLOWIN_PLATFORM") +
           " is one of auto, x11, simulated, none, not \"" + *name + "\"";
  }
  line.platform = found->second;
  return "";
}

/// The same.
std::string readMode(const Given& given, CommandLine& line) {
  const auto mode = std::ranges::find_if(modes, [&](const auto& entry) { return given.contains(entry.first); });
  line.mode = mode != modes.end() ? mode->second : Mode::resident;
  if (const auto number = valueOf(given, "--switch")) {
    const auto read = decimalInteger(*number);
    if (!read) {
      return "--switch needs the number of a desktop, such as --switch 3, not \"" + *number + "\"";
    }
    line.desktopNumber = *read;
  }
  line.classic = given.contains("classic");
  if (line.classic && !given.contains("--switch")) {
    return "classic goes with --switch N";
  }
  if (const auto setting = mode != modes.end() ? given.find(mode->first) : given.end();
      setting != given.end() && !setting->second.empty() && line.mode != Mode::switchSpace) {
    line.settingKey = setting->second.front();
    line.settingValue = setting->second.back();
  }
  return "";
}

/// The same, for how the resident program starts.
std::string readLaunch(const Given& given, CommandLine& line) {
  line.demo = given.contains("--demo");
  line.settingsTab = valueOf(given, "--settings");
  const auto& tabs = SettingsWindow::tabs;
  if (line.settingsTab && std::ranges::find(tabs, *line.settingsTab) == tabs.end()) {
    std::string names;
    for (const auto tab : tabs) {
      names.append(names.empty() ? "" : ", ").append(tab);
    }
    return "--settings is one of " + names + ", not \"" + *line.settingsTab + "\"";
  }
  if ((line.demo || line.settingsTab) && line.mode != Mode::resident) {
    return "--settings TAB and --demo start the program, and go without other modes";
  }
  return "";
}

/// The same.
std::string readPort(const Given& given, CommandLine& line) {
  const auto text = valueOf(given, "--port");
  if (!text) {
    return "";
  }
  const auto number = decimalInteger(*text);
  if (!number || *number < 1 || *number > std::numeric_limits<std::uint16_t>::max()) {
    return "--port needs a number from 1 to 65535, such as --port 57301, not \"" + *text + "\"";
  }
  line.port = static_cast<std::uint16_t>(*number);
  return "";
}

/// The same, for the words of a request.
std::string readRequest(const Given& given, CommandLine& line) {
  if (const auto words = given.find(request); words != given.end()) {
    line.request = words->second;
  }
  if (const auto words = readRequestWords(line.request); !words) {
    return words.error();
  }
  if (!line.request.empty() && (line.mode != Mode::resident || line.simulate)) {
    return "\"" + line.request.front() + "\" is for the running Tallowin, and goes without other modes";
  }
  return "";
}

/// The same, for options that do not go together.
std::string contradiction(const Given& given, const CommandLine& line) {
  const auto isAsked = [&](const auto& mode) { return given.contains(mode.first); };
  const auto isSetting = [&](const auto& mode) { return isAsked(mode) && isSettingsMode(mode.second); };
  if (std::ranges::any_of(modes, isSetting) && std::ranges::count_if(modes, isAsked) > 1) {
    return "--settings-list, --get, --set and --unset go alone, one at a time";
  }
  if (line.home && line.home->empty()) {
    return "--home needs the name of a folder";
  }
  if (line.scenario && line.simulate) {
    return "--scenario runs in real time and --simulate in virtual time; give one of them";
  }
  if (line.journal && !line.simulate) {
    return "--journal FILE goes with --simulate FILE";
  }
  if ((line.scenario || line.simulate) && given.contains("--platform") && line.platform != PlatformChoice::simulated) {
    return "a scenario runs on the simulated platform; leave --platform out";
  }
  return "";
}

}  // namespace

const std::vector<CommandLineOption>& commandLineOptions() {
  static const std::vector<CommandLineOption> table = {
      {"--probe", {}, "Print what the desktop reports about its Spaces."},
      {"--switch", {"N"}, "Switch to desktop N, and wait until that is seen."},
      {"classic", {}, "With --switch N, by the desktop's own shortcuts from now on."},
      {"--capture", {}, "Write a preview image of each visible Space."},
      {"--settings-list", {}, "List every setting with its value."},
      {"--get", {"KEY"}, "Print a setting."},
      {"--set", {"KEY", "VALUE"}, "Change a setting."},
      {"--unset", {"KEY"}, "Go back to a setting's default."},
      {"--version", {}, "Print the version."},
      {"--help", {}, "Print this text."},
      {"--platform", {"auto|x11|simulated|none"}, "Which desktop to work on (or set TALLOWIN_PLATFORM)."},
      {"--scenario", {"FILE"}, "Work on a simulated desktop, in real time."},
      {"--simulate", {"FILE"}, "Work on a simulated desktop, in virtual time; its files stay in memory."},
      {"--journal", {"FILE"}, "Write its journal there; without a mode it is printed."},
      {"--home", {"DIR"}, "Keep data and settings below DIR."},
      {"--port", {"N"}, "Open the HTTP interface (setting localAPI) on this port, not on 57301."},
      {"--settings", {"TAB"}, "Open the settings window once started."},
      {"--demo", {}, "Start in demonstration mode."},
      {"--verbose", {}, "Log to standard error too."},
  };
  return table;
}

std::string usageOf(const CommandLineOption& option) {
  std::string text(option.name);
  for (const auto value : option.values) {
    text.append(" ").append(value);
  }
  return text;
}

std::expected<CommandLine, std::string> parseCommandLine(std::span<const std::string> arguments,
                                                         const std::optional<std::string>& environmentPlatform) {
  const auto given = gather(arguments);
  if (!given) {
    return std::unexpected(given.error());
  }
  CommandLine line;
  for (const auto& [argument, mode] : {modes[0], modes[1]}) {
    if (given->contains(argument)) {
      line.mode = mode;
      return line;
    }
  }
  line.scenario = valueOf(*given, "--scenario");
  line.simulate = valueOf(*given, "--simulate");
  line.journal = valueOf(*given, "--journal");
  line.home = valueOf(*given, "--home");
  line.verbose = given->contains("--verbose");
  for (const auto& fault :
       {readPlatform(*given, environmentPlatform, line), readMode(*given, line), readLaunch(*given, line),
        readPort(*given, line), readRequest(*given, line), contradiction(*given, line)}) {
    if (!fault.empty()) {
      return std::unexpected(fault);
    }
  }
  if (line.scenario || line.simulate) {
    line.platform = PlatformChoice::simulated;
  }
  return line;
}

}  // namespace tallowin
