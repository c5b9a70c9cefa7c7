#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <poll.h>
#include <stdexcept>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include "tests/soak/random/verdict.h"

namespace tallowin {

namespace {

[[noreturn]] void judgeAndExit(const std::string& scenarioJSON, bool twice, bool loud, int writer) {
  prctl(PR_SET_PDEATHSIG, SIGKILL);
  if (!loud) {
    const int nowhere = open("/dev/null", O_WRONLY | O_CLOEXEC);
    dup2(nowhere, STDOUT_FILENO);
    dup2(nowhere, STDERR_FILENO);
  }
  const auto verdict = judge(scenarioJSON, twice);
  constexpr std::size_t longest = 4000;  // a pipe takes it at once, and it arrives at once
  const auto text = nlohmann::json{verdict.invariant, verdict.detail.substr(0, longest), verdict.journal}.dump(
      -1, ' ', false, nlohmann::json::error_handler_t::replace);
  const auto written = write(writer, text.data(), text.size());
  _exit(written == static_cast<ssize_t>(text.size()) ? EXIT_SUCCESS : EXIT_FAILURE);
}

}  // namespace

Verdict judgeIsolated(const std::string& scenarioJSON, bool twice, bool loud) {
  int ends[2];
  pid_t process = -1;
  if (pipe2(ends, O_CLOEXEC) != 0 || (process = fork()) < 0) {
    throw std::runtime_error("no process can be started");
  }
  if (process == 0) {
    judgeAndExit(scenarioJSON, twice, loud, ends[1]);
  }
  close(ends[1]);
  constexpr int patience = 180'000;  // a scenario takes milliseconds, hours of it with sanitizers half a minute
  pollfd waiting{ends[0], POLLIN, 0};
  const bool isLate = poll(&waiting, 1, patience) == 0;
  if (isLate) {
    kill(process, SIGKILL);
  }
  std::string text(PIPE_BUF * 16, '\0');
  text.resize(static_cast<std::size_t>(std::max<ssize_t>(read(ends[0], text.data(), text.size()), 0)));
  close(ends[0]);
  int status = 0;
  waitpid(process, &status, 0);
  const auto json = nlohmann::json::parse(text, nullptr, false);
  if (isLate) {
    return {"the program ends", "it still runs after three minutes", 0};
  }
  if (!json.is_array()) {
    const auto how = WIFSIGNALED(status) ? "signal " + std::to_string(WTERMSIG(status))
                                         : "status " + std::to_string(WEXITSTATUS(status));
    return {"the program does not crash", how, 0};
  }
  return {json[0], json[1], json[2]};
}

}  // namespace tallowin
