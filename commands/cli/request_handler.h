#pragma once

#include "commands/cli/request_job.h"
#include "commands/commands_under_way.h"

namespace tallowin {

/// Does what other programs of the user's ask the running instance for. Main thread only.
class RequestHandler {
 public:
  /// `answers` holds every kind of request.
  RequestHandler(RequestTable answers, CommandsUnderWay& underWay)
      : answers_(std::move(answers)), underWay_(underWay) {}

  /// At once, or, where that is still waited for, when there is a snapshot and, for what is asked, when what was
  /// commanded before has happened.
  void handle(const Request& request, std::unique_ptr<Caller> caller) const;

 private:
  const RequestTable answers_;
  CommandsUnderWay& underWay_;
};

}  // namespace tallowin
