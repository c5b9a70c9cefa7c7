#pragma once

#include "platform/desktop_names.h"
#include "platform/simulated/journal.h"

namespace tallowin {

/// Names of Spaces for the simulated system's own displays of them: a line of the journal whenever they become others.
/// The system itself names none. Main thread only.
class SimulatedDesktopNames : public DesktopNames {
 public:
  explicit SimulatedDesktopNames(Journal& journal) : journal_(journal) {}

  void publish(const std::map<ManagedSpaceID, std::string>& names) override {
    if (names_ == names) {
      return;
    }
    names_ = names;
    auto listed = nlohmann::ordered_json::object();
    for (const auto& [space, name] : names) {
      listed[std::to_string(space)] = name;
    }
    journal_.record("publishDesktopNames", {{"names", listed}});
  }
  const std::map<ManagedSpaceID, std::string>& ownNames() override { return none_; }
  Subscription observeOwnNames(std::function<void()> /*observer*/) override { return {}; }

 private:
  Journal& journal_;
  std::map<ManagedSpaceID, std::string> names_;
  const std::map<ManagedSpaceID, std::string> none_;
};

}  // namespace tallowin
