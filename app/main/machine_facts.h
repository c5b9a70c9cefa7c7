#pragma once

#include "platform/desktop_facts.h"

namespace tallowin {

/// The facts of a desktop, with what this machine has beside it: the message bus, notifications, starting with the
/// desktop. Main thread only.
class MachineFacts : public DesktopFacts {
 public:
  explicit MachineFacts(DesktopFacts& desktop) : desktop_(desktop) {}

  std::optional<WindowManagerFacts> windowManager() override { return desktop_.windowManager(); }
  std::vector<SetUpCheck> checks() override;

 private:
  DesktopFacts& desktop_;
};

}  // namespace tallowin
