#include "commands/cli/request_job.h"

namespace tallowin {

void handleRequest(const RequestTable& answers, CommandsUnderWay& underWay, const Request& request,
                   std::unique_ptr<Caller> caller) {
  auto words = readRequestWords(request.arguments);
  const RequestJob job{words.value_or(RequestWords()), std::move(caller), request.workingDirectory};
  if (!words) {
    job.fail(words.error(), exit_status::usage);
    return;
  }
  auto answer = [&answers, job] { answers.at(job.words.kind)(job); };
  switch (job.words.nature()) {
    case RequestNature::control:
      answer();
      break;
    case RequestNature::action:
      underWay.whenStarted(std::move(answer));
      break;
    case RequestNature::query:
      underWay.whenSettled(std::move(answer));
      break;
  }
}

}  // namespace tallowin
