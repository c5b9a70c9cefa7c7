#include "app/doctor.h"

#include <algorithm>

#include "app/program.h"
#include "automation/record_services.h"
#include "base/json_text.h"
#include "base/unicode.h"
#include "commands/outcome.h"

namespace tallowin {

namespace {

SetUpCheck httpCheck(const Settings& settings, bool isRunning, std::optional<std::uint16_t> port) {
  constexpr auto title = "HTTP";
  if (!settings.get(setting::localAPI)) {
    return {title, true, "HTTP is off (setting localAPI)."};
  }
  if (!isRunning) {
    return {title, true, "HTTP is on (setting localAPI), and is served when Tallowin runs."};
  }
  return port ? SetUpCheck{title, true, "HTTP is served on port " + std::to_string(*port) + "."}
              : SetUpCheck{title, false, "HTTP is on (setting localAPI), but its port could not be opened.",
                           "See which program has the port, or start Tallowin with --port N."};
}

bool isWell(const DoctorReport& report) {
  return std::ranges::all_of(report.checks, &SetUpCheck::ok);
}

std::string textOf(const DoctorReport& report) {
  std::string text;
  for (const auto& check : report.checks) {
    text.append(check.ok ? "ok         " : "attention  ").append(printable(check.finding)).append("\n");
    if (!check.advice.empty()) {
      text.append("           ").append(printable(check.advice)).append("\n");
    }
  }
  return text;
}

std::string jsonOf(const DoctorReport& report) {
  auto checks = PropertyList::array();
  for (const auto& check : report.checks) {
    checks.push_back({{"title", check.title},
                      {"ok", check.ok},
                      {"finding", check.finding},
                      {"advice", check.advice.empty() ? PropertyList() : PropertyList(check.advice)}});
  }
  return prettyJSON({{"running", report.isRunning}, {"ok", isWell(report)}, {"checks", std::move(checks)}});
}

}  // namespace

DoctorReport reportOfInstance(std::vector<SetUpCheck> checks, const Settings& settings,
                              std::optional<std::uint16_t> port) {
  checks.insert(checks.begin(),
                {"Running", true, "Tallowin " + programVersion().version + " runs, and is the only one."});
  checks.push_back(httpCheck(settings, true, port));
  return {true, std::move(checks)};
}

void answerDoctor(const RequestJob& job, const DoctorReport& report) {
  job.caller->out(job.words.json() ? jsonOf(report) : textOf(report));
  job.caller->exit(isWell(report) ? exit_status::success : exit_status::failure);
}

bool asksDoctor(const CommandLine& line) {
  const auto words = readRequestWords(line.request);
  return line.mode == Mode::resident && words && words->kind == RequestKind::doctor;
}

int runDoctor(const Platform& platform, const Storage& storage, const Settings& settings, const CommandLine& line,
              std::ostream& out) {
  auto checks = setUpChecks(platform, storage);
  checks.insert(checks.begin(), {"Running", false, "Tallowin is not running.", "\"tallowin\" starts it."});
  checks.push_back(httpCheck(settings, false, std::nullopt));
  const DoctorReport report{false, std::move(checks)};
  const auto words = readRequestWords(line.request);
  out << (words && words->json() ? jsonOf(report) : textOf(report));
  return exit_status::unavailable;
}

}  // namespace tallowin
