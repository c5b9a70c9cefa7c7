#pragma once

#include "platform/url_events.h"

namespace tallowin {

/// URLs that the simulated user opens. Main thread only.
class SimulatedURLEvents : public URLEvents {
 public:
  void setHandler(std::function<void(const std::string& text)> handler) override { handler_ = std::move(handler); }

  /// Hands over a text; nothing happens while nobody takes it.
  void open(const std::string& text) {
    if (handler_) {
      handler_(text);
    }
  }

 private:
  std::function<void(const std::string& text)> handler_;
};

}  // namespace tallowin
