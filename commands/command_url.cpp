#include "commands/command_url.h"

#include <map>

#include "base/decimal_integer.h"
#include "base/unicode.h"

namespace tallowin {

namespace {

using MaybeCommand = std::optional<SpaceCommand>;

/// A URL ready for being understood: the host in lower case, the query by keys.
struct Request {
  std::string host;
  std::vector<std::string> path;
  std::map<std::string, std::string> query;

  [[nodiscard]] std::optional<std::string> value(const std::string& key) const {
    const auto found = query.find(key);
    return found != query.end() ? std::optional(found->second) : std::nullopt;
  }
  [[nodiscard]] std::optional<std::string> firstComponent() const {
    return path.empty() ? std::nullopt : std::optional(path.front());
  }
  [[nodiscard]] std::string firstWord() const { return lowerCased(firstComponent().value_or("")); }
};

/// The Space that a request names. Only some hosts take the query's "name" for a reference; for others it is a new
/// name.
SpaceRef reference(const Request& request, bool nameIsReference) {
  if (const auto component = request.firstComponent()) {
    return spaceRefFromText(*component);
  }
  if (const auto name = request.value("name"); name && nameIsReference) {
    return SpaceRef::name(*name);
  }
  const auto number = decimalInteger(request.value("space").value_or(""));
  return number ? SpaceRef::number(*number) : SpaceRef::current();
}

/// What a profile or template is called: the path, else the query.
std::optional<std::string> givenName(const Request& request) {
  const auto component = request.firstComponent();
  return component ? component : request.value("name");
}

MaybeCommand moveWindow(const Request& request) {
  const auto word = request.firstWord();
  if (word == "next" || word == "right") {
    return command::MoveWindowStep{true};
  }
  if (word == "previous" || word == "left") {
    return command::MoveWindowStep{false};
  }
  return command::MoveWindow{reference(request, true)};
}

template <typename Named>
MaybeCommand named(const Request& request) {
  auto name = givenName(request);
  return name ? MaybeCommand(Named{*std::move(name)}) : std::nullopt;
}

template <typename Referring>
MaybeCommand referring(const Request& request) {
  return Referring{reference(request, false)};
}

template <typename Plain>
MaybeCommand plain(const Request& /*request*/) {
  return Plain{};
}

template <typename Directed, bool direction>
MaybeCommand directed(const Request& /*request*/) {
  return Directed{direction};
}

using Reader = MaybeCommand (*)(const Request&);

const std::map<std::string_view, Reader>& readers() {
  static const std::map<std::string_view, Reader> table = {
      {"switch", [](const Request& request) -> MaybeCommand { return command::SwitchTo{reference(request, true)}; }},
      {"next", directed<command::Step, true>},
      {"right", directed<command::Step, true>},
      {"previous", directed<command::Step, false>},
      {"prev", directed<command::Step, false>},
      {"left", directed<command::Step, false>},
      {"back", plain<command::Back>},
      {"last", plain<command::Back>},
      {"overview", plain<command::Overview>},
      {"move-window", moveWindow},
      {"rename",
       [](const Request& request) -> MaybeCommand {
         return command::Rename{reference(request, false), request.value("name")};
       }},
      {"note",
       [](const Request& request) -> MaybeCommand {
         return command::Note{reference(request, false), request.value("text")};
       }},
      {"setup", referring<command::Setup>},
      {"settings", plain<command::OpenSettings>},
      {"diagnostics", plain<command::Diagnostics>},
      {"profile", named<command::Profile>},
      {"template", named<command::Template>},
      {"save-layout", plain<command::SaveLayout>},
      {"restore-layout", plain<command::RestoreLayout>},
      {"eject", plain<command::Eject>},
      {"windows",
       [](const Request& request) -> MaybeCommand { return command::Windows{request.firstWord() == "all"}; }},
      {"launcher", plain<command::Launcher>},
      {"launch", plain<command::Launcher>},
      {"scratchpad", plain<command::ToggleScratchpad>},
      {"minimize-all", plain<command::MinimizeAll>},
      {"undo-minimize", plain<command::UndoMinimize>},
      {"save-space", plain<command::SaveAndClose>},
      {"add-desktop", plain<command::AddDesktop>},
      {"remove-desktop", referring<command::RemoveDesktop>},
      {"notes", referring<command::Notes>},
      {"demo-tour", plain<command::DemoTour>},
      {"up", directed<command::Step2D, true>},
      {"down", directed<command::Step2D, false>},
  };
  return table;
}

}  // namespace

std::expected<std::optional<SpaceCommand>, DoubledQueryKey> commandFromURL(const URL& url) {
  if (lowerCased(url.scheme) != "tallowin") {
    return std::nullopt;
  }
  Request request{lowerCased(url.host.value_or("")), url.pathComponents, {}};
  for (const auto& item : url.queryItems) {
    if (!request.query.emplace(item.name, item.value.value_or("")).second) {
      return std::unexpected(DoubledQueryKey{item.name});
    }
  }
  const auto reader = readers().find(request.host);
  return reader != readers().end() ? reader->second(request) : std::nullopt;
}

}  // namespace tallowin
