#include "tests/soak/random/isolated_run.h"

#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <nlohmann/json.hpp>
#include <poll.h>
#include <stdexcept>
#include <sys/wait.h>
#include <unistd.h>

namespace tallowin {

namespace {

using Json = nlohmann::json;

/// A scenario takes milliseconds, with sanitizers on a busy machine a few seconds.
constexpr auto patience = std::chrono::seconds(60);

[[noreturn]] void judgeAndExit(const std::string& scenarioJSON, bool twice, bool loud, int writer) {
  if (!loud) {
    const int nowhere = open("/dev/null", O_WRONLY | O_CLOEXEC);
    dup2(nowhere, STDOUT_FILENO);
    dup2(nowhere, STDERR_FILENO);
  }
  const auto verdict = judge(scenarioJSON, twice);
  constexpr std::size_t longest = 4000;  // a pipe takes it at once
  const auto text = Json{verdict.invariant, verdict.detail.substr(0, longest), verdict.journal}.dump(
      -1, ' ', false, Json::error_handler_t::replace);
  const auto written = write(writer, text.data(), text.size());
  _exit(written == static_cast<ssize_t>(text.size()) ? EXIT_SUCCESS : EXIT_FAILURE);
}

std::string readAll(int descriptor) {
  std::string text;
  char buffer[8192];
  for (ssize_t size = 0; (size = read(descriptor, buffer, sizeof buffer)) > 0;) {
    text.append(buffer, static_cast<std::size_t>(size));
  }
  return text;
}

}  // namespace

IsolatedRun::IsolatedRun(const std::string& scenarioJSON, bool twice, bool loud)
    : deadline_(std::chrono::steady_clock::now() + patience) {
  int ends[2];
  if (pipe2(ends, O_CLOEXEC) != 0 || (process_ = fork()) < 0) {
    throw std::runtime_error("no process can be started");
  }
  if (process_ == 0) {
    judgeAndExit(scenarioJSON, twice, loud, ends[1]);
  }
  close(ends[1]);
  reader_ = ends[0];
}

IsolatedRun::~IsolatedRun() {
  if (process_ > 0) {
    kill(process_, SIGKILL);
    waitpid(process_, nullptr, 0);
  }
  close(reader_);
}

Verdict IsolatedRun::verdict() {
  using std::chrono::milliseconds;
  const auto left = std::chrono::duration_cast<milliseconds>(deadline_ - std::chrono::steady_clock::now());
  pollfd waiting{reader_, POLLIN, 0};
  if (poll(&waiting, 1, static_cast<int>(std::max<milliseconds::rep>(left.count(), 0))) == 0) {
    return {"the program ends", "it still runs after " + std::to_string(patience.count()) + " s", 0};
  }
  const auto text = readAll(reader_);
  int status = 0;
  waitpid(std::exchange(process_, -1), &status, 0);
  const auto json = Json::parse(text, nullptr, false);
  if (!json.is_array()) {
    const auto how = WIFSIGNALED(status) ? "signal " + std::to_string(WTERMSIG(status))
                                         : "status " + std::to_string(WEXITSTATUS(status));
    return {"the program does not crash", how, 0};
  }
  return {json[0], json[1], json[2]};
}

Verdict judgeIsolated(const std::string& scenarioJSON, bool twice, bool loud) {
  return IsolatedRun(scenarioJSON, twice, loud).verdict();
}

}  // namespace tallowin
