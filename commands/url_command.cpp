#include "commands/url_command.h"

#include "base/unicode.h"
#include "commands/command_url.h"
#include "commands/exit_status.h"

namespace tallowin {

namespace {

std::string notUnderstood(const std::string& what) {
  return "Tallowin does not understand " + what;
}

/// Whether it is a URL but for the scheme, such as "next".
bool isWithoutScheme(const std::string& text) {
  const auto url = URL::parseReference(text);
  return url && url->scheme.empty() && !text.empty() && isValidUTF8(text);
}

}  // namespace

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
