#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>

#include "base/app_paths.h"
#include "base/lifetime.h"
#include "base/settings.h"
#include "commands/command_url.h"
#include "commands/http/http_message.h"
#include "platform/platform.h"

namespace tallowin {

/// Lets other programs of this machine read the Spaces and send commands over HTTP, while the setting "localAPI" is on.
/// "GET /spaces" is open to all of them; "POST /command?url=tallowin://..." needs "Authorization: Bearer TOKEN", where
/// the token is what only the user can read in "api-token.txt". A request that names another host is refused where it
/// would be granted, as web pages can have a name of their own lead here. Main thread only, except token() and
/// respond(), which any thread may call.
class LocalAPI {
 public:
  /// Where clients look for it, unless they are told of another one.
  static constexpr std::uint16_t standardPort = 57301;

  LocalAPI(const Platform& platform, const AppPaths& paths, const Settings& settings,
           std::uint16_t port = standardPort);
  LocalAPI(const LocalAPI&) = delete;
  LocalAPI& operator=(const LocalAPI&) = delete;
  ~LocalAPI() = default;

  /// Told every command that an authorised request asked for, on the main thread.
  std::function<void(const SpaceCommand& command)> onCommand;

  /// Told of a command's URL, in an authorised request, whose query names a key twice. On the main thread. Such a
  /// request is not answered.
  std::function<void(const DoubledQueryKey& mistake)> onDoubledKey;

  /// Opens or closes the port as the setting says. A port that cannot be opened is logged.
  void refresh();

  /// The port, while it is open.
  [[nodiscard]] std::optional<std::uint16_t> openPort() const {
    return listener_ != nullptr ? std::optional(port_) : std::nullopt;
  }

  /// The token, made when there is none; any text that stands in the file is one. The file is taken from the eyes of
  /// others. Nothing when a new one cannot be kept: nobody is let in then.
  [[nodiscard]] std::optional<std::string> token();

  /// The answer to one request; empty for none.
  [[nodiscard]] std::string respond(std::string_view request);

 private:
  void start();
  [[nodiscard]] std::string spaces(const HTTPRequest& request) const;
  [[nodiscard]] std::string command(const HTTPRequest& request, const URL& target);
  [[nodiscard]] bool isAuthorised(const HTTPRequest& request);
  void onMainThread(std::function<void()> work);

  const Platform& platform_;
  const Settings& settings_;
  const std::uint16_t port_;
  const std::filesystem::path stateFile_;
  const std::filesystem::path tokenFile_;

  std::mutex tokenMutex_;                ///< held while the token is read or made
  bool saidThatThereIsNoToken_ = false;  ///< guarded by it
  Lifetime lifetime_;
  std::unique_ptr<TCPListener> listener_;  ///< last, so that its thread has left when the others go
};

}  // namespace tallowin
