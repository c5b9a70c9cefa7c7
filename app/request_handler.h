#pragma once

#include "app/request_job.h"

namespace tallowin {

/// Does what other programs of the user's ask the running instance for. Main thread only.
class RequestHandler {
 public:
  /// `answers` holds every kind of request.
  explicit RequestHandler(RequestTable answers) : answers_(std::move(answers)) {}

  void handle(const Request& request, std::unique_ptr<Caller> caller) const;

 private:
  const RequestTable answers_;
};

}  // namespace tallowin
