#include "commands/dbus/desktop_methods.h"

#include <algorithm>
#include <type_traits>

#include "commands/cli/request_words.h"
#include "commands/outcome.h"
#include "commands/scripting/scripting_bridge.h"

namespace tallowin {

namespace {

using Argument = CommandMethod::Argument;
using Maker = SpaceCommand (*)(const PropertyList& arguments);

constexpr Argument spaceArgument{"s", "space"};

template <typename Command, typename... Commands>
consteval std::size_t indexAmong(const std::variant<Commands...>* /*vocabulary*/) {
  const bool same[] = {std::is_same_v<Command, Commands>...};
  return static_cast<std::size_t>(std::ranges::find(same, true) - std::begin(same));
}

template <typename Command>
constexpr std::size_t indexOf = indexAmong<Command>(static_cast<const SpaceCommand*>(nullptr));

std::string text(const PropertyList& argument) {
  return argument.get<std::string>();
}

template <typename Command>
constexpr CommandMethod plain(std::string_view name) {
  return {name, indexOf<Command>, false, {}, [](const PropertyList&) -> SpaceCommand { return Command{}; }};
}

template <typename Command>
constexpr CommandMethod onSpace(std::string_view name) {
  const Maker make = [](const PropertyList& arguments) -> SpaceCommand {
    return Command{ScriptingBridge::ref(arguments[0])};
  };
  return {name, indexOf<Command>, false, {spaceArgument}, make};
}

template <typename Command>
constexpr CommandMethod onSpaceWithText(std::string_view name, std::string_view textName) {
  const Maker make = [](const PropertyList& arguments) -> SpaceCommand {
    return Command{ScriptingBridge::ref(arguments[0]), text(arguments[1])};
  };
  return {name, indexOf<Command>, false, {spaceArgument, Argument{"s", textName}}, make};
}

template <typename Command>
constexpr CommandMethod onSpaceWithoutText(std::string_view name) {
  const Maker make = [](const PropertyList& arguments) -> SpaceCommand {
    return Command{ScriptingBridge::ref(arguments[0]), std::nullopt};
  };
  return {name, indexOf<Command>, true, {spaceArgument}, make};
}

template <typename Command>
constexpr CommandMethod onFlag(std::string_view name, std::string_view flagName) {
  const Maker make = [](const PropertyList& arguments) -> SpaceCommand { return Command{arguments[0].get<bool>()}; };
  return {name, indexOf<Command>, false, {Argument{"b", flagName}}, make};
}

template <typename Command>
constexpr CommandMethod onName(std::string_view name) {
  const Maker make = [](const PropertyList& arguments) -> SpaceCommand { return Command{text(arguments[0])}; };
  return {name, indexOf<Command>, false, {Argument{"s", "name"}}, make};
}

constexpr CommandMethod commandTable[] = {
    onSpace<command::SwitchTo>("SwitchTo"),
    onFlag<command::Step>("Step", "right"),
    onSpace<command::MoveWindow>("MoveWindow"),
    onFlag<command::MoveWindowStep>("MoveWindowStep", "right"),
    onSpaceWithText<command::Rename>("Rename", "name"),
    onSpaceWithoutText<command::Rename>("AskForName"),
    onSpaceWithText<command::Note>("Note", "text"),
    onSpaceWithoutText<command::Note>("AskForNote"),
    onSpace<command::Setup>("Setup"),
    onName<command::Profile>("Profile"),
    onName<command::Template>("Template"),
    onFlag<command::Windows>("Windows", "allSpaces"),
    onSpace<command::RemoveDesktop>("RemoveDesktop"),
    onSpace<command::Notes>("Notes"),
    onFlag<command::Step2D>("Step2D", "up"),
    plain<command::Back>("Back"),
    plain<command::Overview>("Overview"),
    plain<command::OpenSettings>("Settings"),
    plain<command::Diagnostics>("Diagnostics"),
    plain<command::SaveLayout>("SaveLayout"),
    plain<command::RestoreLayout>("RestoreLayout"),
    plain<command::Eject>("Eject"),
    plain<command::Launcher>("Launcher"),
    plain<command::ToggleScratchpad>("Scratchpad"),
    plain<command::MinimizeAll>("MinimizeAll"),
    plain<command::UndoMinimize>("UndoMinimize"),
    plain<command::SaveAndClose>("SaveAndClose"),
    plain<command::AddDesktop>("AddDesktop"),
    plain<command::DemoTour>("DemoTour"),
};

/// Whether each command has its one method, in the vocabulary's order.
consteval bool everyCommandHasOneMethod() {
  std::size_t next = 0;
  for (const auto& method : commandTable) {
    if (!method.withoutText && method.command != next++) {
      return false;
    }
  }
  return next == std::variant_size_v<SpaceCommand>;
}
static_assert(everyCommandHasOneMethod());

using Result = DesktopService::Result;
using Reply = DesktopService::Reply;
using Arguments = std::vector<ServiceDescription::Argument>;

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
  Arguments in;
  for (const auto& [type, name] : method.arguments) {
    if (!type.empty()) {
      in.push_back({std::string(type), std::string(name)});
    }
  }
  return {commandInterface,
          {std::string(method.name), in, {}},
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

std::span<const CommandMethod> commandMethods() {
  return commandTable;
}

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
