#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "core/program_services.h"
#include "core/space_changes.h"
#include "core/space_state.h"
#include "platform/ways_in.h"

namespace tallowin {

/// Tells other programs the state of the Spaces, and then every change. Main thread only.
///
/// As text a line is the sequence number, what changed, the number of the active desktop ("-" for a full-screen Space)
/// and its name, separated by tabs. As JSON it is the state record with "sequence", "change", and "text", "alt",
/// "tooltip" and "class" for bars. "change" is "state" in the first line, then "spaces" (which there are), "active"
/// (which ones are shown) or "names" (what the user has said about one). The sequence number grows by one with every
/// change that is told; readers who came later see the same numbers.
class StateFeed {
 public:
  StateFeed(const ProgramServices& services, SpaceChanges& changes, AppNames apps);

  /// How a reader is told.
  struct Form {
    bool json = false;
    std::optional<SpaceFormat> format;  ///< instead of either form: a line about the active Space
  };

  /// Tells `caller` from now on, until it goes.
  void add(std::shared_ptr<Caller> caller, Form form);

  /// Looks for changes since the last look, and tells them.
  void refresh();

 private:
  struct Reader {
    std::shared_ptr<Caller> caller;  ///< shared with the request until that has been handled
    Form form;
  };
  /// What changes are told of.
  struct State {
    std::vector<std::string> spaces;           ///< ids and what belongs to them, display by display
    std::vector<std::string> active;           ///< the menu-bar display, then the active Space of each
    std::map<std::string, PropertyList> said;  ///< by id: what the user has said
    bool operator==(const State&) const = default;
  };

  [[nodiscard]] State state() const;
  void tell(const std::string& change);
  [[nodiscard]] std::string line(const std::string& change, const Form& form) const;
  [[nodiscard]] PropertyList record(const std::string& change) const;

  const ProgramServices& services_;
  const AppNames apps_;
  std::vector<Reader> readers_;
  State last_;  ///< what the readers know
  std::uint64_t sequence_ = 0;
  Subscription changes_;
};

}  // namespace tallowin
