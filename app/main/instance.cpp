#include "app/main/instance.h"

#include <chrono>
#include <cstdlib>
#include <iostream>
#include <thread>

#include "app/main/resident_start.h"
#include "commands/cli/request_words.h"
#include "commands/exit_status.h"
#include "commands/url_command.h"
#include "platform/channel/channel_client.h"

namespace tallowin {

namespace {

using namespace std::chrono_literals;
using SteadyClock = std::chrono::steady_clock;
using HandOverOutcome = HandOver::Outcome;

/// Another instance may be about to listen, or about to end.
constexpr auto patience = 5s;
constexpr auto pause = 1ms;

Instance ended(int status, const std::string& message = "") {
  if (!message.empty()) {
    std::cerr << "tallowin: " << message << '\n';
  }
  return {nullptr, status};
}

/// Nothing when there is still nobody who answers.
std::optional<Instance> handedOver(const std::string& folder, const std::vector<std::string>& request) {
  auto result = handOver(folder, request);
  switch (result.outcome) {
    case HandOverOutcome::answered:
      std::cerr << remarksOn(result.answerer, TALLOWIN_VERSION, std::getenv("DISPLAY"));
      return ended(result.status);
    case HandOverOutcome::unreachable:
      return ended(exit_status::unavailable, result.why);
    case HandOverOutcome::notRunning:
      break;
  }
  return std::nullopt;
}

/// What becomes of a request when nobody runs and nobody is to be started for it; nothing when somebody is.
std::optional<Instance> refusal(const CommandLine& line, const RequestWords& words) {
  if (words.kind == RequestKind::doctor) {
    return Instance();
  }
  if (line.noStart || words.nature() != RequestNature::action) {
    return ended(exit_status::unavailable, "not running; \"tallowin\" starts it");
  }
  if (words.kind != RequestKind::url) {
    return std::nullopt;
  }
  const auto command = commandFromText(words.operands.front());
  return command ? std::nullopt : std::optional(ended(exitStatus(command.error()), command.error().message));
}

/// Makes this process the instance, or finds that there is one.
Instance becomeInstance(const std::string& folder, const CommandLine& line) {
  const auto end = SteadyClock::now() + patience;
  while (SteadyClock::now() < end) {
    auto lock = std::make_unique<InstanceLock>(folder);
    if (lock->state() == InstanceLock::State::failed) {
      std::cerr << "tallowin: no other program can reach this one: " << lock->error() << '\n';
      return {};
    }
    if (lock->state() == InstanceLock::State::held) {
      return {std::move(lock), std::nullopt};
    }
    if (auto answered = handedOver(folder, line.request)) {
      return *std::move(answered);
    }
    std::this_thread::sleep_for(pause);
  }
  return ended(exit_status::unavailable, "the running tallowin does not answer");
}

/// Whether the instance in the folder has Spaces to do something to.
bool seesSpaces(const std::string& folder) {
  const auto asked = handOver(folder, {"list"}, {.silent = true});
  return asked.outcome == HandOverOutcome::answered && asked.status == exit_status::success;
}

/// Starts the instance in the background, and hands the request over as soon as it has Spaces.
Instance startAndAsk(const std::string& folder, const CommandLine& line) {
  ResidentStart start(line, folder);
  const auto end = SteadyClock::now() + patience;
  for (; SteadyClock::now() < end; std::this_thread::sleep_for(pause)) {
    if (const auto advanced = start.advance(); !advanced) {
      return ended(exit_status::unavailable, advanced.error());
    }
    if (seesSpaces(folder)) {
      if (auto answered = handedOver(folder, line.request)) {
        return *std::move(answered);
      }
    }
  }
  return ended(exit_status::unavailable, "Tallowin was started, but there are no desktops yet; nothing was done");
}

/// Asks whoever is about to listen, or to end; starts the instance when there is nobody.
Instance ask(const std::string& folder, const CommandLine& line, const RequestWords& words) {
  const auto end = SteadyClock::now() + patience;
  for (; SteadyClock::now() < end; std::this_thread::sleep_for(pause)) {
    if (auto answered = handedOver(folder, line.request)) {
      return *std::move(answered);
    }
    if (InstanceLock(folder).state() != InstanceLock::State::taken) {
      auto refused = refusal(line, words);
      return refused ? *std::move(refused) : startAndAsk(folder, line);
    }
  }
  return ended(exit_status::unavailable, "the running tallowin does not answer");
}

std::string folderOf(const CommandLine& line) {
  const auto home = line.home ? std::optional(std::filesystem::absolute(*line.home).string()) : std::nullopt;
  return channelFolder(home ? home->c_str() : nullptr);
}

}  // namespace

Instance findInstance(const CommandLine& line) {
  const auto folder = folderOf(line);
  const auto words = readRequestWords(line.request);
  if (!words) {
    return ended(exit_status::usage, words.error());
  }
  return words->kind == RequestKind::start && !line.noStart ? becomeInstance(folder, line) : ask(folder, line, *words);
}

void waitForSettings(const CommandLine& line) {
  constexpr int milliseconds = 1000;
  // Whatever an instance is asked, even nothing, it looks at its settings first.
  static_cast<void>(handOver(folderOf(line), {}, {.patience = milliseconds, .silent = true}));
}

}  // namespace tallowin
