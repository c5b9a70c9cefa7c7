#include "app/command_line.h"

#include <algorithm>
#include <array>
#include <map>
#include <vector>

#include "app/request_words.h"
#include "base/decimal_integer.h"

namespace tallowin {

namespace {

/// An argument that is understood, and what must follow it.
struct Option {
  std::string_view name;
  std::vector<std::string_view> values;
};

const std::vector<Option>& options() {
  static const std::vector<Option> table = {
      {"--probe", {}},
      {"--switch", {"N"}},
      {"--capture", {}},
      {"classic", {}},
      {"--settings-list", {}},
      {"--get", {"KEY"}},
      {"--set", {"KEY", "VALUE"}},
      {"--unset", {"KEY"}},
      {"--platform", {"auto|x11|simulated|none"}},
      {"--scenario", {"FILE"}},
      {"--simulate", {"FILE"}},
      {"--journal", {"FILE"}},
      {"--home", {"DIR"}},
      {"--verbose", {}},
      {"--version", {}},
      {"--help", {}},
  };
  return table;
}

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

std::string usageOf(const Option& option) {
  std::string text(option.name);
  for (const auto value : option.values) {
    text.append(" ").append(value);
  }
  return text;
}

std::expected<Given, std::string> gather(std::span<const std::string> arguments) {
  Given given;
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    const auto option = std::ranges::find(options(), arguments[i], &Option::name);
    // Behind a word of a request it may be anything, a name for instance.
    const bool isPlain = arguments[i] == "classic" && given.contains(request);
    if (option == options().end() || isPlain) {
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
  for (const auto& fault : {readPlatform(*given, environmentPlatform, line), readMode(*given, line),
                            readRequest(*given, line), contradiction(*given, line)}) {
    if (!fault.empty()) {
      return std::unexpected(fault);
    }
  }
  if (line.scenario || line.simulate) {
    line.platform = PlatformChoice::simulated;
  }
  return line;
}

std::string_view helpText() {
  return R"(Tallowin names, switches and scripts virtual desktops ("Spaces").

  tallowin                        watch the Spaces until told to quit
  tallowin URL                    perform a tallowin:// URL
  tallowin list [--json]          list the Spaces
  tallowin current [--json]       name the active Space
  tallowin watch [--json]         print the state, and a line for every change
  tallowin windows [--all] [--json]   list the windows of the active Space, or of all
  tallowin mark [LETTER]          mark the front window with a letter, or with the next one pressed
  tallowin jump [LETTER]          go to the window marked with it
  tallowin pin APP SPACE          send new windows of an application to a Space from now on
  tallowin unpin APP              let them stay where they open
  tallowin saved-spaces [--json]  list the Spaces that were saved and closed
  tallowin reopen NAME            open the applications of a saved Space again
  tallowin edit SPACE [--name TEXT] [--symbol SYMBOL] [--color #RRGGBB] [--note TEXT] [--group TEXT] [--icon FILE]
                                  change what is said of a Space; an empty text takes it away
  tallowin automation SPACE [get|set FILE|clear|run]   what happens on entering and leaving a Space, as JSON
  tallowin profile list|save NAME|use NAME|delete NAME   whole sets of names
  tallowin template list|apply NAME|import FILE   names for a number of Spaces at once
  tallowin time [--days N] [--csv FILE] [--json]   the time spent in each Space
  tallowin export FILE            write everything that you have configured to a file
  tallowin import FILE            take such a file over
  tallowin diagnostics            print a report for support requests
  tallowin answer BUTTON          answer a question that Tallowin asks
  tallowin quit                   tell the running Tallowin to quit

  tallowin --probe                print what the desktop reports about its Spaces
  tallowin --switch N [classic]   switch to desktop N; classic uses the desktop's own shortcuts
  tallowin --capture              write a preview image of each visible Space

  tallowin --settings-list        list every setting with its value
  tallowin --get KEY              print a setting
  tallowin --set KEY VALUE        change a setting
  tallowin --unset KEY            go back to a setting's default

  --platform auto|x11|simulated|none   which desktop to work on (or set TALLOWIN_PLATFORM)
  --scenario FILE                 a simulated desktop, in real time
  --simulate FILE                 a simulated desktop, in virtual time; its files stay in memory
  --journal FILE                  write its journal there; without a mode it is printed
  --home DIR                      keep data and settings below DIR
  --verbose                       log to standard error too
  --version, --help

Exit status: 0 done, 1 no such desktop or other thing, a setting without a value, or a URL that is not understood, 2 the switch was not
seen, 64 a mistake in the arguments, 65 or 66 a scenario that cannot be understood or read, 69 no such desktop system, no
running Tallowin to ask, or it has gone away, 73 a file cannot be written, 74 the output cannot be written, 128 and more
ended by a signal.
)";
}

}  // namespace tallowin
