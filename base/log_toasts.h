#pragma once

#include "platform/log.h"
#include "platform/messages.h"

namespace tallowin {

/// Messages where there is no window to show them in: they go to the log.
class LogToasts : public Toasts {
 public:
  explicit LogToasts(Log& log) : log_(log) {}

  void show(const Toast& toast) override {
    log_.write(toast.isError ? Log::Level::error : Log::Level::info, "Toast", toast.text);
  }

 private:
  Log& log_;
};

}  // namespace tallowin
