#include "commands/command_url.h"

#include <algorithm>
#include <iterator>
#include <map>

#include "base/unicode.h"
#include "base/words.h"
#include "commands/outcome.h"

namespace tallowin {

namespace {

using MaybeCommand = std::optional<SpaceCommand>;

/// A URL ready for being understood: the host in lower case, the query by keys.
struct URLRequest {
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
SpaceRef reference(const URLRequest& request, bool nameIsReference) {
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
std::optional<std::string> givenName(const URLRequest& request) {
  const auto component = request.firstComponent();
  return component ? component : request.value("name");
}

MaybeCommand moveWindow(const URLRequest& request) {
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
MaybeCommand named(const URLRequest& request) {
  auto name = givenName(request);
  return name ? MaybeCommand(Named{*std::move(name)}) : std::nullopt;
}

template <typename Referring>
MaybeCommand referring(const URLRequest& request) {
  return Referring{reference(request, false)};
}

template <typename Plain>
MaybeCommand plain(const URLRequest& /*request*/) {
  return Plain{};
}

template <typename Directed, bool direction>
MaybeCommand directed(const URLRequest& /*request*/) {
  return Directed{direction};
}

using Reader = MaybeCommand (*)(const URLRequest&);

/// What a host is read by, and how it is told to people.
struct Row {
  Reader read;
  CommandURL url;
};

const std::vector<Row>& rows() {
  static const std::vector<Row> table = {
      {[](const URLRequest& request) -> MaybeCommand { return command::SwitchTo{reference(request, true)}; },
       {"switch", "/SPACE", "Switch to a Space, by number or by name or a part of one."}},
      {directed<command::Step, true>, {"next", "", "Step to the next Space."}},
      {directed<command::Step, true>, {"right", "", "The same."}},
      {directed<command::Step, false>, {"previous", "", "Step to the previous Space."}},
      {directed<command::Step, false>, {"prev", "", "The same."}},
      {directed<command::Step, false>, {"left", "", "The same."}},
      {plain<command::Back>, {"back", "", "Go back to the Space that was active before."}},
      {plain<command::Back>, {"last", "", "The same."}},
      {plain<command::Overview>, {"overview", "", "Open the overview."}},
      {moveWindow, {"move-window", "/SPACE or /next or /previous", "Move the front window to a Space."}},
      {[](const URLRequest& request) -> MaybeCommand {
         return command::Rename{reference(request, false), request.value("name")};
       },
       {"rename", "/SPACE?name=NAME", "Name a Space; an empty name takes it away."}},
      {[](const URLRequest& request) -> MaybeCommand {
         return command::Note{reference(request, false), request.value("text")};
       },
       {"note", "/SPACE?text=TEXT", "Note something about a Space; an empty text takes it away."}},
      {referring<command::Setup>, {"setup", "/SPACE", "Open the settings of a Space."}},
      {plain<command::OpenSettings>, {"settings", "", "Open the settings."}},
      {plain<command::Diagnostics>, {"diagnostics", "", "Write a report for support requests."}},
      {named<command::Profile>, {"profile", "/PROFILE", "Change to another set of names."}},
      {named<command::Template>, {"template", "/TEMPLATE", "Lay down a template."}},
      {plain<command::SaveLayout>, {"save-layout", "", "Note where every window is."}},
      {plain<command::RestoreLayout>, {"restore-layout", "", "Put every window back there."}},
      {plain<command::Eject>, {"eject", "", "Gather all windows on the built-in display."}},
      {[](const URLRequest& request) -> MaybeCommand { return command::Windows{request.firstWord() == "all"}; },
       {"windows", "[/all]", "List the windows of the active Space, or of all."}},
      {plain<command::Launcher>, {"launcher", "", "Open the launcher."}},
      {plain<command::Launcher>, {"launch", "", "The same."}},
      {plain<command::ToggleScratchpad>, {"scratchpad", "", "Show or hide the scratchpad application."}},
      {plain<command::MinimizeAll>, {"minimize-all", "", "Minimise the windows of the active Space."}},
      {plain<command::UndoMinimize>, {"undo-minimize", "", "Bring them all back."}},
      {plain<command::SaveAndClose>, {"save-space", "", "Save what is open on the active Space, and close it."}},
      {plain<command::AddDesktop>, {"add-desktop", "", "Add a desktop."}},
      {referring<command::RemoveDesktop>, {"remove-desktop", "/SPACE", "Remove a desktop."}},
      {referring<command::Notes>, {"notes", "/SPACE", "Open the file of notes of a Space."}},
      {plain<command::DemoTour>, {"demo-tour", "", "Show what Tallowin does, with sample names."}},
      {directed<command::Step2D, true>, {"up", "", "Step up in the grid of Spaces."}},
      {directed<command::Step2D, false>, {"down", "", "Step down in it."}},
  };
  return table;
}

std::string notUnderstood(const std::string& what) {
  return "Tallowin does not understand " + what;
}

/// Whether it is a URL but for the scheme, such as "next".
bool isWithoutScheme(const std::string& text) {
  const auto url = URL::parseReference(text);
  return url && url->scheme.empty() && !text.empty() && isValidUTF8(text);
}

}  // namespace

std::vector<CommandURL> commandURLs() {
  std::vector<CommandURL> urls;
  std::ranges::transform(rows(), std::back_inserter(urls), &Row::url);
  return urls;
}

std::expected<std::optional<SpaceCommand>, DoubledQueryKey> commandFromURL(const URL& url) {
  if (lowerCased(url.scheme) != "tallowin") {
    return std::nullopt;
  }
  URLRequest request{lowerCased(url.host.value_or("")), url.pathComponents, {}};
  for (const auto& item : url.queryItems) {
    if (!request.query.emplace(item.name, item.value.value_or("")).second) {
      return std::unexpected(DoubledQueryKey{item.name});
    }
  }
  const auto row = std::ranges::find(rows(), request.host, [](const Row& each) { return each.url.host; });
  return row != rows().end() ? row->read(request) : std::nullopt;
}

int exitStatus(const URLFault& fault) {
  return fault.kind == URLFault::Kind::doubledKey ? exit_status::badData : exit_status::failure;
}

std::expected<SpaceCommand, URLFault> commandFromText(const std::string& text) {
  const auto url = URL::parse(text);
  if (!url && isWithoutScheme(text)) {
    return std::unexpected(URLFault{URLFault::Kind::unknown, notUnderstood(text)});
  }
  if (!url) {
    return std::unexpected(URLFault{URLFault::Kind::notURL, notUnderstood(text)});
  }
  const auto command = commandFromURL(*url);
  if (!command) {
    return std::unexpected(URLFault{URLFault::Kind::doubledKey, command.error().message()});
  }
  if (!*command) {
    return std::unexpected(URLFault{URLFault::Kind::unknown, notUnderstood(url->host.value_or(text))});
  }
  return **command;
}

}  // namespace tallowin
