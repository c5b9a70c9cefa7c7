#include "app/main/instance.h"

#include <chrono>
#include <iostream>
#include <thread>

#include "app/exit_status.h"
#include "app/request_words.h"
#include "app/url_command.h"
#include "platform/channel/channel_client.h"

namespace tallowin {

namespace {

using namespace std::chrono_literals;
using Outcome = HandOver::Outcome;

/// Another instance may be about to listen, or about to end.
constexpr auto patience = 5s;
constexpr auto pause = 10ms;

Instance ended(int status, const std::string& message = "") {
  if (!message.empty()) {
    std::cerr << "tallowin: " << message << '\n';
  }
  return {nullptr, status};
}

/// What a process that became the instance could not do; nothing when all is well.
std::optional<Instance> refusal(const RequestWords& words) {
  if (words.kind == RequestKind::start) {
    return std::nullopt;
  }
  if (words.kind != RequestKind::url) {
    return ended(exit_status::unavailable, "not running; \"tallowin\" starts it");
  }
  const auto command = commandFromText(words.operands.front());
  if (command) {
    return std::nullopt;
  }
  return ended(exitStatus(command.error()), command.error().message);
}

/// Nothing when there is still nobody who answers.
std::optional<Instance> handedOver(const std::string& folder, const std::vector<std::string>& request) {
  auto result = handOver(folder, request);
  switch (result.outcome) {
    case Outcome::answered:
      return ended(result.status);
    case Outcome::unreachable:
      return ended(exit_status::unavailable, result.why);
    case Outcome::notRunning:
      break;
  }
  return std::nullopt;
}

}  // namespace

Instance findInstance(const CommandLine& line) {
  const auto home = line.home ? std::optional(std::filesystem::absolute(*line.home).string()) : std::nullopt;
  const auto folder = channelFolder(home ? home->c_str() : nullptr);
  const auto words = readRequestWords(line.request);
  const auto end = std::chrono::steady_clock::now() + patience;
  while (words && std::chrono::steady_clock::now() < end) {
    auto lock = std::make_unique<InstanceLock>(folder);
    if (lock->state() == InstanceLock::State::failed) {
      std::cerr << "tallowin: no other program can reach this one: " << lock->error() << '\n';
      return {};
    }
    if (lock->state() == InstanceLock::State::held) {
      if (auto refused = refusal(*words)) {
        return *std::move(refused);
      }
      return {std::move(lock), std::nullopt};
    }
    if (auto answered = handedOver(folder, line.request)) {
      return *std::move(answered);
    }
    std::this_thread::sleep_for(pause);
  }
  return ended(exit_status::unavailable, "the running tallowin does not answer");
}

}  // namespace tallowin
