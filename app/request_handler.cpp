#include "app/request_handler.h"

namespace tallowin {

void RequestHandler::handle(const Request& request, std::unique_ptr<Caller> caller) const {
  auto words = readRequestWords(request.arguments);
  RequestJob job{words.value_or(RequestWords()), std::move(caller), request.workingDirectory};
  if (!words) {
    job.fail(words.error(), exit_status::usage);
    return;
  }
  answers_.at(words->kind)(std::move(job));
}

}  // namespace tallowin
