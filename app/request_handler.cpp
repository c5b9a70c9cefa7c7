#include "app/request_handler.h"

#include <map>

#include "app/exit_status.h"
#include "app/space_list.h"
#include "base/json_text.h"
#include "base/unicode.h"

namespace tallowin {

namespace {

void fail(Caller& caller, const std::string& message, int status) {
  caller.err("tallowin: " + message + "\n");
  caller.exit(status);
}

void print(Caller& caller, const std::string& text) {
  caller.out(text);
  caller.exit(exit_status::success);
}

}  // namespace

RequestHandler::RequestHandler(Services services) : services_(std::move(services)) {}

void RequestHandler::handle(const Request& request, std::unique_ptr<Caller> caller) {
  using Answer = void (RequestHandler::*)(Job) const;
  static const std::map<RequestKind, Answer> answers = {
      {RequestKind::start, &RequestHandler::start}, {RequestKind::url, &RequestHandler::openURL},
      {RequestKind::list, &RequestHandler::list},   {RequestKind::current, &RequestHandler::current},
      {RequestKind::watch, &RequestHandler::watch}, {RequestKind::quit, &RequestHandler::quit},
  };
  const auto words = readRequestWords(request.arguments);
  if (!words) {
    fail(*caller, words.error(), exit_status::usage);
    return;
  }
  (this->*answers.at(words->kind))({*words, std::move(caller)});
}

void RequestHandler::start(Job job) const {
  job.caller->err("tallowin: already running\n");
  job.caller->exit(exit_status::success);
}

void RequestHandler::openURL(Job job) const {
  if (const auto fault = services_.openURL(job.words.operands.front())) {
    fail(*job.caller, fault->message, exitStatus(*fault));
  } else {
    job.caller->exit(exit_status::success);
  }
}

void RequestHandler::list(Job job) const {
  const auto& snapshot = services_.watcher.snapshot().get();
  print(*job.caller, job.words.json
                         ? prettyJSON(stateRecord(snapshot, services_.store, services_.apps, services_.clock.now()))
                         : spaceList(snapshot, services_.store));
}

void RequestHandler::current(Job job) const {
  const auto space = services_.watcher.snapshot().get().activeSpace();
  if (!space) {
    fail(*job.caller, "there is no active Space", exit_status::failure);
    return;
  }
  print(*job.caller, job.words.json ? prettyJSON(spaceRecord(*space, services_.store, services_.apps))
                                    : printable(services_.store.displayName(*space)) + "\n");
}

void RequestHandler::watch(Job job) const {
  services_.feed.add(std::move(job.caller), job.words.json);
}

void RequestHandler::quit(Job job) const {
  job.caller->exitAtEnd(exit_status::success);
  services_.runLoop.stop(exit_status::success);
}

}  // namespace tallowin
