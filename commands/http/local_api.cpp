#include "commands/http/local_api.h"

#include <algorithm>

#include "base/unicode.h"
#include "base/words.h"

namespace tallowin {

namespace {

constexpr auto localApiCategory = "LocalAPI";
constexpr unsigned privateFile = 0600;

std::string failed(std::string_view status, std::string_view error) {
  return httpAnswer(status, R"({"error":")" + std::string(error) + R"("})");
}

std::string notFound() {
  return failed("404 Not Found", "not found");
}

std::string forbiddenHost() {
  return failed("403 Forbidden", "forbidden host");
}

std::string unknownCommand() {
  return failed("400 Bad Request", "unknown command");
}

/// Whether the texts are equal, in a time that depends on `given` only: nobody finds out about `secret` by trying.
bool equalInConstantTime(std::string_view given, std::string_view secret) {
  unsigned difference = given.size() == secret.size() ? 0 : 1;
  for (std::size_t i = 0; i < given.size(); ++i) {
    const char expected = i < secret.size() ? secret[i] : '\0';
    difference |= static_cast<unsigned char>(given[i] ^ expected);
  }
  return difference == 0;
}

/// Who asks for two things at once is not understood.
std::optional<URL> onlyURL(const URL& target) {
  const auto isURL = [](const URLQueryItem& item) { return item.name == "url"; };
  const auto item = std::ranges::find_if(target.queryItems, isURL);
  const bool isOnly = std::ranges::count_if(target.queryItems, isURL) == 1;
  return isOnly && item->value ? URL::parse(*item->value) : std::nullopt;
}

std::string newToken(System& system) {
  auto text = lowerCased(randomUUID([&system] { return system.randomBits(); }));
  std::erase(text, '-');
  return text;
}

}  // namespace

LocalAPI::LocalAPI(const Platform& platform, const AppPaths& paths, const Settings& settings, std::uint16_t port)
    : platform_(platform),
      settings_(settings),
      port_(port),
      stateFile_(paths.supportDirectory() / "state.json"),
      tokenFile_(paths.supportDirectory() / "api-token.txt") {}

void LocalAPI::refresh() {
  const bool wanted = settings_.get(setting::localAPI);
  if (wanted && listener_ == nullptr) {
    start();
  } else if (!wanted) {
    listener_.reset();
  }
}

void LocalAPI::start() {
  auto listener = platform_.listeners.listen(port_, [this](const std::string& request) { return respond(request); });
  if (listener) {
    listener_ = *std::move(listener);
    return;
  }
  platform_.log.error(localApiCategory, "could not open port " + std::to_string(port_));
  platform_.log.debug(localApiCategory, listener.error());
}

std::string LocalAPI::respond(std::string_view bytes) {
  const auto request = HTTPRequest::parse(bytes);
  if (!request) {
    return failed("400 Bad Request", "bad request");
  }
  const auto target = URL::parseReference(request->target);
  if (target && request->method == "GET" && target->path == "/spaces") {
    return spaces(*request);
  }
  if (target && request->method == "POST" && target->path == "/command") {
    return command(*request, *target);
  }
  return notFound();
}

std::string LocalAPI::spaces(const HTTPRequest& request) const {
  const auto state = platform_.files.read(stateFile_);
  if (!state) {
    return notFound();
  }
  return request.hasForeignHost() ? forbiddenHost() : httpAnswer("200 OK", *state);
}

std::string LocalAPI::command(const HTTPRequest& request, const URL& target) {
  if (!isAuthorised(request)) {
    return failed("401 Unauthorized", "missing or wrong token");
  }
  const auto url = onlyURL(target);
  if (!url) {
    return unknownCommand();
  }
  const auto command = commandFromURL(*url);
  if (!command) {
    onMainThread([this, mistake = command.error()] {
      if (onDoubledKey) {
        onDoubledKey(mistake);
      }
    });
    return "";
  }
  if (!*command) {
    return unknownCommand();
  }
  if (request.hasForeignHost()) {
    return forbiddenHost();
  }
  onMainThread([this, command = **command] {
    if (onCommand) {
      onCommand(command);
    }
  });
  return httpAnswer("200 OK", R"({"ok":true})");
}

bool LocalAPI::isAuthorised(const HTTPRequest& request) {
  const auto expected = token();
  const auto given = request.header("authorization");
  return expected && given && equalInConstantTime(*given, "Bearer " + *expected);
}

std::optional<std::string> LocalAPI::token() {
  const std::lock_guard lock(tokenMutex_);
  const auto kept = platform_.files.read(tokenFile_);
  if (kept && isValidUTF8(*kept) && !trimmed(*kept).empty()) {
    if (const auto restricted = platform_.files.restrictMode(tokenFile_, privateFile); !restricted) {
      platform_.log.error(localApiCategory,
                          "others may read " + tokenFile_.filename().string() + ": " + restricted.error().description);
    }
    return std::string(trimmed(*kept));
  }
  auto made = newToken(platform_.system);
  if (platform_.files.writeAtomically(tokenFile_, made, privateFile, OldMode::replaced)) {
    return made;
  }
  if (!std::exchange(saidThatThereIsNoToken_, true)) {
    platform_.log.error(localApiCategory,
                        "could not write " + tokenFile_.filename().string() + ", so no command is let in");
  }
  return std::nullopt;
}

void LocalAPI::onMainThread(std::function<void()> work) {
  platform_.mainQueue.async(lifetime_.bound(std::move(work)));
}

}  // namespace tallowin
