#include "app/command_line.h"

#include <algorithm>
#include <array>
#include <limits>
#include <map>
#include <vector>

#include "base/words.h"
#include "commands/cli/request_words.h"
#include "presentation/presentation.h"

namespace tallowin {

namespace {

constexpr auto platforms = std::to_array<std::pair<std::string_view, PlatformChoice>>({
    {"auto", PlatformChoice::automatic},
    {"x11", PlatformChoice::x11},
    {"simulated", PlatformChoice::simulated},
    {"none", PlatformChoice::none},
});

/// The words that are no options, among those that were given.
constexpr std::string_view anyRequest;

/// Options that were given, with what followed each. The last one wins.
using Given = std::map<std::string_view, std::vector<std::string>>;

/// The diagnostic mode that is done: the first of the table that stands anywhere among the arguments, as an operand or
/// a value too. Unknown words, and options without their values, are passed over then.
std::optional<Mode> findDiagnosticMode(std::span<const std::string> arguments) {
  for (const auto& option : commandLineOptions()) {
    if (isDiagnostic(option.name) && std::ranges::find(arguments, option.name) != arguments.end()) {
      return option.mode;
    }
  }
  return std::nullopt;
}

std::expected<Given, std::string> gather(std::span<const std::string> arguments, bool diagnoses) {
  Given given;
  bool optionsEnded = false;
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    optionsEnded = optionsEnded || arguments[i] == "--";
    const auto* const option = findOption(arguments[i]);
    // Behind a word of a request it may be anything, a name for instance.
    const bool isPlain = arguments[i] == "classic" && given.contains(anyRequest);
    if (option == nullptr || isPlain || optionsEnded) {
      given[anyRequest].push_back(arguments[i]);
      continue;
    }
    const auto values = arguments.subspan(i + 1, std::min(option->values().size(), arguments.size() - i - 1));
    const bool isComplete = values.size() == option->values().size();
    if (diagnoses && (!isComplete || std::ranges::any_of(values, isDiagnostic))) {
      continue;
    }
    if (!isComplete) {
      return std::unexpected(std::string(option->name) + " needs more after it: " + usageOf(*option));
    }
    given[option->name] = std::vector(values.begin(), values.end());
    i += values.size();
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

/// The same, for --switch N [classic].
std::string readSwitch(const Given& given, CommandLine& line) {
  const auto number = valueOf(given, "--switch");
  const auto read = number ? decimalInteger(*number) : std::nullopt;
  if (!read) {
    return "--switch needs the number of a desktop, such as --switch 3" + (number ? ", not \"" + *number + "\"" : "");
  }
  line.desktopNumber = *read;
  const auto words = given.find(anyRequest);
  line.classic = given.contains("classic") ||
                 (words != given.end() && std::ranges::find(words->second, "classic") != words->second.end());
  return "";
}

/// The same.
std::string readMode(const Given& given, CommandLine& line) {
  const auto asked = std::ranges::find_if(commandLineOptions(), [&](const CommandLineOption& option) {
    return option.mode && given.contains(option.name);
  });
  if (given.contains("classic")) {
    return "classic goes with --switch N";
  }
  if (asked != commandLineOptions().end()) {
    line.mode = *asked->mode;
    if (const auto& values = given.find(asked->name)->second; !values.empty()) {
      line.settingKey = values.front();
      line.settingValue = values.back();
    }
  }
  return "";
}

/// The same, for how the resident program starts.
std::string readLaunch(const Given& given, CommandLine& line) {
  line.demo = given.contains("--demo");
  line.noUi = given.contains("--no-ui");
  line.settingsTab = valueOf(given, "--settings");
  if ((line.demo || line.settingsTab) && line.mode != Mode::resident) {
    return "--settings TAB and --demo start the program, and go without other modes";
  }
  const auto& tabs = settingsTabs;
  if (line.settingsTab && std::ranges::find(tabs, *line.settingsTab) == tabs.end()) {
    line.warning = "--settings is one of " + joined(tabs, ", ") + ", not \"" + *line.settingsTab + "\"";
    line.settingsTab.reset();
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
  if (const auto words = given.find(anyRequest); words != given.end()) {
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

/// The same, for settings, which go alone.
std::string settingsContradiction(const Given& given) {
  const auto asks = [&](const CommandLineOption& option) { return option.mode && given.contains(option.name); };
  const auto asksSetting = [&](const CommandLineOption& option) {
    return asks(option) && isSettingsMode(*option.mode);
  };
  if (std::ranges::any_of(commandLineOptions(), asksSetting) && std::ranges::count_if(commandLineOptions(), asks) > 1) {
    return "--settings-list, --get, --set and --unset go alone, one at a time";
  }
  return "";
}

/// The same, for options that do not go together.
std::string contradiction(const Given& given, const CommandLine& line) {
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

std::string firstOf(std::initializer_list<std::string> faults) {
  const auto* const fault = std::ranges::find_if(faults, [](const std::string& text) { return !text.empty(); });
  return fault != faults.end() ? *fault : "";
}

/// The same, where one of the diagnostic modes is asked for: what it does not need is not looked at.
std::string readDiagnostic(const Given& given, Mode mode, const std::optional<std::string>& environment,
                           CommandLine& line) {
  line.mode = mode;
  return firstOf({readPlatform(given, environment, line), mode == Mode::switchSpace ? readSwitch(given, line) : "",
                  contradiction(given, line)});
}

/// The same, where none is.
std::string readRest(const Given& given, const std::optional<std::string>& environment, CommandLine& line) {
  const auto launch = firstOf({readPlatform(given, environment, line), readMode(given, line), readLaunch(given, line)});
  return firstOf({launch, readPort(given, line), readRequest(given, line), settingsContradiction(given),
                  contradiction(given, line)});
}

}  // namespace

std::string_view nameOf(PlatformChoice platform) {
  return std::ranges::find(platforms, platform, &std::pair<std::string_view, PlatformChoice>::second)->first;
}

std::string usageOf(const CommandLineOption& option) {
  std::string text(option.name);
  for (const auto value : option.values()) {
    text.append(" ").append(value);
  }
  return text;
}

std::expected<CommandLine, std::string> parseCommandLine(std::span<const std::string> arguments,
                                                         const std::optional<std::string>& environmentPlatform) {
  const auto diagnostic = findDiagnosticMode(arguments);
  const auto given = gather(arguments, diagnostic.has_value());
  if (!given) {
    return std::unexpected(given.error());
  }
  CommandLine line;
  for (const auto& [argument, mode] : {std::pair("--help", Mode::help), std::pair("--version", Mode::version)}) {
    if (given->contains(argument) && !diagnostic) {  // they need nothing else to be right
      line.mode = mode;
      return line;
    }
  }
  line.scenario = valueOf(*given, "--scenario");
  line.simulate = valueOf(*given, "--simulate");
  line.journal = valueOf(*given, "--journal");
  line.home = valueOf(*given, "--home");
  line.verbose = given->contains("--verbose");
  line.noStart = given->contains("--no-start");
  const auto fault = diagnostic ? readDiagnostic(*given, *diagnostic, environmentPlatform, line)
                                : readRest(*given, environmentPlatform, line);
  if (!fault.empty()) {
    return std::unexpected(fault);
  }
  if (line.scenario || line.simulate) {
    line.platform = PlatformChoice::simulated;
  }
  return line;
}

}  // namespace tallowin
