#include "commands/dbus/desktop_methods.h"

#include <algorithm>

#include "commands/cli/request_words.h"
#include "commands/outcome.h"
#include "commands/scripting/scripting_bridge.h"

namespace tallowin {

namespace {

using Result = DesktopService::Result;
using Reply = DesktopService::Reply;
using Arguments = std::vector<ServiceDescription::Argument>;

/// The command that arguments stand for, which are its members in their order. A text may be left out.
template <typename Command>
SpaceCommand commandOf(const PropertyList& arguments) {
  if constexpr (requires { Command{SpaceRef(), std::optional<std::string>()}; }) {
    return Command{ScriptingBridge::ref(arguments[0]),
                   arguments.size() > 1 ? std::optional(arguments[1].get<std::string>()) : std::nullopt};
  } else if constexpr (requires { Command{SpaceRef()}; }) {
    return Command{ScriptingBridge::ref(arguments[0])};
  } else if constexpr (requires { Command{true}; }) {
    return Command{arguments[0].get<bool>()};
  } else if constexpr (requires { Command{std::string()}; }) {
    return Command{arguments[0].get<std::string>()};
  } else {
    return Command{};
  }
}

/// A method that gives one command, named after it.
struct CommandMethod {
  std::string name;
  Arguments in;
  SpaceCommand (*make)(const PropertyList& arguments);
};

/// One for every command; behind those whose text may be absent, which no argument can say, one for that.
std::vector<CommandMethod> commandMethods() {
  const ServiceDescription::Argument space{"s", "space"};
  return {
      {"SwitchTo", {space}, commandOf<command::SwitchTo>},
      {"Step", {{"b", "right"}}, commandOf<command::Step>},
      {"MoveWindow", {space}, commandOf<command::MoveWindow>},
      {"MoveWindowStep", {{"b", "right"}}, commandOf<command::MoveWindowStep>},
      {"Rename", {space, {"s", "name"}}, commandOf<command::Rename>},
      {"AskForName", {space}, commandOf<command::Rename>},
      {"Note", {space, {"s", "text"}}, commandOf<command::Note>},
      {"AskForNote", {space}, commandOf<command::Note>},
      {"Setup", {space}, commandOf<command::Setup>},
      {"Profile", {{"s", "name"}}, commandOf<command::Profile>},
      {"Template", {{"s", "name"}}, commandOf<command::Template>},
      {"Windows", {{"b", "allSpaces"}}, commandOf<command::Windows>},
      {"RemoveDesktop", {space}, commandOf<command::RemoveDesktop>},
      {"Notes", {space}, commandOf<command::Notes>},
      {"Step2D", {{"b", "up"}}, commandOf<command::Step2D>},
      {"Back", {}, commandOf<command::Back>},
      {"Overview", {}, commandOf<command::Overview>},
      {"Settings", {}, commandOf<command::OpenSettings>},
      {"Diagnostics", {}, commandOf<command::Diagnostics>},
      {"SaveLayout", {}, commandOf<command::SaveLayout>},
      {"RestoreLayout", {}, commandOf<command::RestoreLayout>},
      {"Eject", {}, commandOf<command::Eject>},
      {"Launcher", {}, commandOf<command::Launcher>},
      {"Scratchpad", {}, commandOf<command::ToggleScratchpad>},
      {"MinimizeAll", {}, commandOf<command::MinimizeAll>},
      {"UndoMinimize", {}, commandOf<command::UndoMinimize>},
      {"SaveAndClose", {}, commandOf<command::SaveAndClose>},
      {"AddDesktop", {}, commandOf<command::AddDesktop>},
      {"DemoTour", {}, commandOf<command::DemoTour>},
  };
}

constexpr auto failed = "com.quorvex.Tallowin.Error.Failed";
constexpr auto notUnderstood = "com.quorvex.Tallowin.Error.NotUnderstood";
constexpr auto invalidArguments = "org.freedesktop.DBus.Error.InvalidArgs";
constexpr auto unknownMethod = "org.freedesktop.DBus.Error.UnknownMethod";

/// What a desktop entry offers beside starting the program.
struct Action {
  std::string_view name;
  SpaceCommand command;
};
const Action actions[] = {
    {"next", command::Step{true}},
    {"previous", command::Step{false}},
    {"back", command::Back{}},
    {"overview", command::Overview{}},
};

bool isList(const PropertyList& value, bool (PropertyList::*isElement)() const noexcept) {
  return value.is_array() &&
         std::ranges::all_of(value, [isElement](const PropertyList& element) { return (element.*isElement)(); });
}

bool fits(const PropertyList& value, std::string_view type) {
  return (type == "s" && value.is_string()) || (type == "b" && value.is_boolean()) ||
         (type == "as" && isList(value, &PropertyList::is_string)) || (type == "av" && value.is_array()) ||
         (type == "a{sv}" && value.is_object());
}

bool fit(const PropertyList& values, const Arguments& arguments) {
  return values.is_array() &&
         std::ranges::equal(values, arguments,
                            [](const PropertyList& value, const auto& argument) { return fits(value, argument.type); });
}

std::string usage(const ServiceDescription::Method& method) {
  std::string text = "it is called so: " + method.name + "(";
  for (const auto& [type, name] : method.in) {
    text += (text.ends_with('(') ? "" : ", ") + type + " " + name;
  }
  return text + ")";
}

DesktopMethod methodOf(const CommandMethod& method, const ScriptingBridge& bridge) {
  return {commandInterface,
          {method.name, method.in, {}},
          [&bridge, make = method.make](const PropertyList& arguments, const Reply& reply) {
            bridge.send(make(arguments));
            reply(nullptr);
          }};
}

DesktopMethod methodOf(const Intent& intent, const ScriptingBridge& bridge) {
  const auto parameter = intent.parameter ? std::string(intent.parameter->name) : "";
  const auto in = intent.parameter ? Arguments{{"s", parameter}} : Arguments();
  const auto out = intent.answersText() ? Arguments{{"s", "name"}} : Arguments();
  return {commandInterface,
          {std::string(intent.name), in, out},
          [&bridge, name = std::string(intent.name), parameter](const PropertyList& arguments, const Reply& reply) {
            IntentEvent event{name};
            for (const auto& argument : arguments) {
              event.parameters[parameter] = argument;
            }
            reply(performIntent(event, bridge).value_or(nullptr));  // there is an intent of this name
          }};
}

/// Performs them all, and answers the first that was not understood or could not be carried out.
Result open(const OpenURL& openURL, const PropertyList& urls) {
  std::optional<URLFault> first;
  for (const auto& url : urls) {
    auto fault = openURL(url.get<std::string>());
    if (!first) {
      first = std::move(fault);
    }
  }
  if (!first) {
    return nullptr;
  }
  const auto* const name = first->kind == URLFault::Kind::refused ? failed : notUnderstood;
  return std::unexpected(ServiceError{name, first->message});
}

/// Whoever sent words by the bus. He is answered when they end, with whether all went well and what was said.
class ReplyingCaller : public Caller {
 public:
  explicit ReplyingCaller(Reply reply) : reply_(std::move(reply)) {}
  ~ReplyingCaller() override {
    if (reply_) {
      exit(exit_status::unavailable);
    }
  }
  ReplyingCaller(const ReplyingCaller&) = delete;
  ReplyingCaller& operator=(const ReplyingCaller&) = delete;

  bool out(std::string_view text) override { return said(text); }
  bool err(std::string_view text) override {
    constexpr std::string_view program = "tallowin: ";  // as a terminal needs it
    return said(text.starts_with(program) ? text.substr(program.size()) : text);
  }
  void exit(int status) override {
    if (said_.ends_with('\n')) {
      said_.pop_back();
    }
    std::exchange(reply_, nullptr)(PropertyList::array({status == exit_status::success, said_}));
  }
  void exitAtEnd(int status) override { exit(status); }

 private:
  bool said(std::string_view text) {
    said_ += text;
    return true;
  }

  Reply reply_;
  std::string said_;
};

void doWords(const CommandChannel::Handler& request, const std::string& folder, const std::vector<std::string>& words,
             const Reply& reply) {
  const auto read = readRequestWords(words);
  if (read && read->kind == RequestKind::watch) {
    reply(PropertyList::array({false, "PropertiesChanged tells of every change"}));
  } else {
    request({words, folder}, std::make_unique<ReplyingCaller>(reply));
  }
}

Result activate(const ScriptingBridge& bridge, const std::string& name) {
  const auto* const action = std::ranges::find(actions, name, &Action::name);
  if (action == std::ranges::end(actions)) {
    return std::unexpected(ServiceError{invalidArguments, "there is no action " + name});
  }
  bridge.send(action->command);
  return nullptr;
}

void addApplicationMethods(std::vector<DesktopMethod>& methods, const ScriptingBridge& bridge, const OpenURL& openURL) {
  const ServiceDescription::Argument platformData{"a{sv}", "platform_data"};
  methods.push_back(
      {applicationInterface, {"Activate", {platformData}, {}}, [&bridge](const PropertyList&, const Reply& reply) {
         bridge.send(command::OpenSettings{});
         reply(nullptr);
       }});
  methods.push_back(
      {applicationInterface,
       {"Open", {{"as", "uris"}, platformData}, {}},
       [openURL](const PropertyList& arguments, const Reply& reply) { reply(open(openURL, arguments[0])); }});
  methods.push_back({applicationInterface,
                     {"ActivateAction", {{"s", "action_name"}, {"av", "parameter"}, platformData}, {}},
                     [&bridge](const PropertyList& arguments, const Reply& reply) {
                       reply(activate(bridge, arguments[0].get<std::string>()));
                     }});
}

}  // namespace

std::vector<DesktopMethod> desktopMethods(const ScriptingBridge& bridge, const OpenURL& openURL,
                                          const CommandChannel::Handler& request, const std::string& folder) {
  std::vector<DesktopMethod> methods;
  for (const auto& method : commandMethods()) {
    methods.push_back(methodOf(method, bridge));
  }
  for (const auto& intent : intents()) {
    methods.push_back(methodOf(intent, bridge));
  }
  methods.push_back(
      {commandInterface, {"Perform", {{"s", "url"}}, {}}, [openURL](const PropertyList& arguments, const Reply& reply) {
         reply(open(openURL, arguments));
       }});
  methods.push_back({commandInterface,
                     {"Do", {{"as", "words"}}, {{"b", "ok"}, {"s", "sentence"}}},
                     [request, folder](const PropertyList& arguments, const Reply& reply) {
                       doWords(request, folder, arguments[0], reply);
                     }});
  addApplicationMethods(methods, bridge, openURL);
  return methods;
}

void run(const std::vector<DesktopMethod>& methods, const std::string& interface, const std::string& name,
         const PropertyList& arguments, const Reply& reply) {
  const auto method = std::ranges::find_if(
      methods, [&](const DesktopMethod& each) { return each.interface == interface && each.declared.name == name; });
  if (method == methods.end()) {
    reply(std::unexpected(ServiceError{unknownMethod, "there is no method " + name}));
  } else if (!fit(arguments, method->declared.in)) {
    reply(std::unexpected(ServiceError{invalidArguments, usage(method->declared)}));
  } else {
    method->run(arguments, reply);
  }
}

}  // namespace tallowin
